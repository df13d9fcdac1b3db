#include "BoxReport.h"

#include <fmt/format.h>

#include "ReportText.h"
#include "ReportValues.h"

namespace App {

namespace {

std::string titleOf(const BoxOptions& options) {
    switch (options.criterion) {
        case Criterion::kVolume:
            return "The box of least volume:";
        case Criterion::kBaseArea:
            return "The box whose smallest side is least:";
        case Criterion::kBaseHeight:
            return "The lowest box along axis 3, of least footprint:";
        case Criterion::kAroundAxis:
            return fmt::format("The box of least cross-section around {}, axis 3:",
                               textOf(options.axis));
        case Criterion::kPrincipal:
            break;
    }
    return "The box along the principal axes, not the smallest:";
}

double cubicCentimetres(double cubicMillimetres) {
    return cubicMillimetres / 1000.0;
}

}  // namespace

std::string boxReportTable(const BoxOptions& options, const BoxResult& result) {
    const PartBox& box = result.box;
    std::string text = headingOf(options, result.part) + titleOf(options) + "\n\n" +
                       "  Axis   Full length   Half-length   Direction\n"
                       "                  mm            mm\n";
    for (std::size_t i = 0; i < 3; ++i) {
        const auto half = static_cast<double>(box.halfExtents[i]);
        text += fmt::format("     {}  {:>12.3f}  {:>12.3f}   {}\n", i + 1, 2.0 * half, half,
                            textOf(box.axes[i]));
    }
    text += fmt::format("\nCentre {} mm. Volume {:.3f} cm³", textOf(box.center),
                        cubicCentimetres(box.volume()));
    if (result.partVolume && box.volume() > 0.0) {
        text += fmt::format("; the part's {:.3f} cm³ fill {:.1f} % of it",
                            cubicCentimetres(*result.partVolume),
                            100.0 * *result.partVolume / box.volume());
    }
    return text + ".\n";
}

std::string boxReportJson(const BoxOptions& options, const BoxResult& result) {
    const PartBox& box = result.box;
    Json axes = Json::array();
    Json sizes = Json::array();
    for (std::size_t i = 0; i < 3; ++i) {
        axes.push_back(valueOf(box.axes[i]));
        sizes.push_back(2.0f * box.halfExtents[i]);
    }
    Json settings = {{"criterion", nameOf(options.criterion)}};
    if (options.criterion == Criterion::kAroundAxis) settings["axis"] = valueOf(options.axis);
    Json found = {{"centerMm", valueOf(box.center)},
                  {"axes", axes},
                  {"sizeMm", sizes},
                  {"halfExtentsMm", box.halfExtents},
                  {"volumeMm3", box.volume()}};
    found["partVolumeMm3"] = result.partVolume ? Json(*result.partVolume) : Json(nullptr);
    const Json report = {{"schema", "tesk-orient/box/1"},
                         {"input", inputValue(options, result.part)},
                         {"settings", settings},
                         {"conventions",
                          {{"axes", "three unit vectors, orthogonal to each other"},
                           {"sizeMm", "full lengths along the axes"},
                           {"halfExtentsMm", "half-lengths along the axes"},
                           {"partVolumeMm3", "null where the mesh is open"}}},
                         {"box", found}};
    return textOf(report);
}

}  // namespace App

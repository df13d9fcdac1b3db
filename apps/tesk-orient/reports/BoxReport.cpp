#include "reports/BoxReport.h"

#include <fmt/format.h>

#include "poses/Turn.h"
#include "reports/ReportText.h"

namespace App {

namespace {

std::string titleOf(const BoxOptions& options) {
    switch (options.criterion) {
        case Criterion::kVolume:
            return "The box of least volume:";
        case Criterion::kBaseArea:
            return "The box with the smallest side of least area:";
        case Criterion::kBaseHeight:
            return "The lowest box along axis 3, of least footprint:";
        case Criterion::kAroundAxis:
            return fmt::format("The box of least cross-section around ({:g}, {:g}, {:g}), axis 3:",
                               options.axis.x, options.axis.y, options.axis.z);
        case Criterion::kPrincipal:
            break;
    }
    return "The box along the principal axes, not the smallest:";
}

Json orNull(const std::optional<double>& value) {
    return value ? Json(*value) : Json(nullptr);
}

std::string summaryOf(const BoxResult& result) {
    std::string text = fmt::format("Centre {} mm. Volume {}", textOf(result.box.center),
                                   volumeText(result.box.volume()));
    if (const auto ratio = result.fillRatio()) {
        return text + fmt::format("; the part's {} fill {:.1f} % of it.\n",
                                  volumeText(*result.partVolume), 100.0 * *ratio);
    }
    return text + (result.partVolume ? ".\n"
                                     : "; the part's own volume is unknown because its surface is "
                                       "not closed and consistently wound.\n");
}

}  // namespace

std::optional<double> BoxResult::fillRatio() const {
    if (!partVolume || !(box.volume() > 0.0)) return std::nullopt;
    return *partVolume / box.volume();
}

std::string boxText(const BoxOptions& options, const BoxResult& result) {
    const PartBox& box = result.box;
    std::string text = titleOf(options) + "\n\n" +
                       "  Axis   Full length   Half-length   Direction\n"
                       "                  mm            mm\n";
    for (std::size_t i = 0; i < 3; ++i) {
        const auto half = static_cast<double>(box.halfExtents[i]);
        text += fmt::format("     {}  {:>12.3f}  {:>12.3f}   {}\n", i + 1, 2.0 * half, half,
                            textOf(box.axes[i]));
    }
    return text + "\n" + summaryOf(result) +
           fmt::format("To bring axes 1, 2, 3 to X, Y, Z, {}.\n", textOf(turnIn(box.alignment())));
}

std::string boxReportTable(const BoxOptions& options, const BoxResult& result) {
    return headingOf(options, result.part) + boxText(options, result);
}

Json boxMembers(const BoxResult& result) {
    const PartBox& box = result.box;
    Json axes = Json::array();
    Json sizes = Json::array();
    for (std::size_t i = 0; i < 3; ++i) {
        axes.push_back(valueOf(box.axes[i]));
        sizes.push_back(2.0f * box.halfExtents[i]);
    }
    Json found = {{"centerMm", valueOf(box.center)},
                  {"axes", axes},
                  {"sizeMm", sizes},
                  {"halfExtentsMm", box.halfExtents},
                  {"volumeMm3", box.volume()}};
    found["partVolumeMm3"] = orNull(result.partVolume);
    found["fillRatio"] = orNull(result.fillRatio());
    found["turn"] = valueOf(turnIn(box.alignment()));
    found["matrix"] = valueOf(box.alignment());
    return {{"box", found}};
}

Json settingsOf(const BoxOptions& options) {
    Json settings = {{"criterion", nameOf(options.criterion)}};
    if (options.criterion == Criterion::kAroundAxis) settings["axis"] = valueOf(options.axis);
    return settings;
}

Json boxConventions() {
    return {{"axes", "three unit vectors, orthogonal, right-handed"},
            {"sizeMm", "full lengths along the axes"},
            {"halfExtentsMm", "half-lengths along the axes"},
            {"partVolumeMm3", "null where the mesh is not closed and consistently wound"},
            {"fillRatio", "partVolumeMm3 / volumeMm3, null where there is none"},
            {"turn", "brings axes 1, 2, 3 to X, Y, Z; right-handed"},
            {"matrix", std::string("the same about the box's centre: ") + kMatrixConvention}};
}

Json boxReportJson(const BoxOptions& options, const BoxResult& result) {
    Json report = {{"schema", "tesk-orient/box/1"},
                   {"input", inputValue(options, result.part)},
                   {"settings", settingsOf(options)},
                   {"conventions", boxConventions()}};
    report.update(boxMembers(result));
    return report;
}

}  // namespace App

#include <fmt/format.h>

#include "poses/Pose.h"
#include "poses/Turn.h"
#include "reports/OrientReport.h"
#include "reports/ReportText.h"

namespace App {

namespace {

using OptimizeOrient::OptOrientation;

std::string row(std::size_t rank, bool isChosen, const OptOrientation& o) {
    return fmt::format("{} {:>3}  {:>6.3f}  {:>8.2f}  {:>11.3f}  {:>10.2f}  {:>9.2f}   {}\n",
                       isChosen ? '*' : ' ', rank, o.score, o.height,
                       static_cast<double>(o.supportVolume) / 1000.0,
                       static_cast<double>(o.projectedArea) / 100.0,
                       static_cast<double>(o.boxVolume) / 1000.0, textOf(upOf(o)));
}

std::string advice(const OrientOptions& options, const OptOrientation& chosen) {
    const std::string which = options.rank == 1 ? "Best" : fmt::format("Rank {}", options.rank);
    const Turn turn{chosen.axis.GetNormal(), chosen.angle};
    return fmt::format("{}: {}; its direction {} then points up.\n", which, textOf(turn),
                       textOf(upOf(chosen)));
}

}  // namespace

std::string rankingText(const OrientOptions& options, const OrientResult& result) {
    std::string text =
        "  Rank   Score    Height      Support   Footprint        Box   Direction of the part\n"
        "      (low is   mm             cm³         cm²         cm³   that points up\n"
        "       better)\n";
    for (std::size_t i = 0; i < result.orientations.size(); ++i) {
        text += row(i + 1, static_cast<int>(i) + 1 == options.rank, result.orientations[i]);
    }
    const auto chosen = static_cast<std::size_t>(options.rank - 1);
    return text + "\n" + advice(options, result.orientations[chosen]);
}

std::string reportTable(const OrientOptions& options, const OrientResult& result) {
    return headingOf(options, result.part) + rankingText(options, result);
}

}  // namespace App

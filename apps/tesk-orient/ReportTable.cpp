#include <fmt/format.h>

#include <array>
#include <cmath>
#include <iterator>
#include <numbers>

#include "FileBytes.h"
#include "MeshChecks.h"
#include "Pose.h"
#include "Report.h"

namespace App {

namespace {

using OptimizeOrient::OptOrientation;

double degrees(float angleRad) {
    return static_cast<double>(angleRad) * 180.0 / std::numbers::pi;
}

/// A component for people: −0 is 0.
double tidy(float value) {
    const double rounded = std::round(static_cast<double>(value) * 1000.0) / 1000.0;
    return rounded == 0.0 ? 0.0 : rounded;
}

std::string direction(const UVector3<float>& v) {
    return fmt::format("({:.3f}, {:.3f}, {:.3f})", tidy(v.x), tidy(v.y), tidy(v.z));
}

std::string heading(const LoadedPart& part) {
    const std::array<double, 3> size = sizeOf(part.mesh);
    return fmt::format("{}{}{}, {} triangles, {} vertices, {:.1f} × {:.1f} × {:.1f} mm\n\n",
                       part.form, part.form.empty() ? "" : " ", part.format,
                       part.mesh.triangles.size(), part.mesh.positions.size(), size[0], size[1],
                       size[2]);
}

std::string row(std::size_t rank, bool isChosen, const OptOrientation& o) {
    return fmt::format("{} {:>3}  {:>6.3f}  {:>8.2f}  {:>11.3f}  {:>10.2f}  {:>9.2f}   {}\n",
                       isChosen ? '*' : ' ', rank, o.score, o.height,
                       static_cast<double>(o.supportVolume) / 1000.0,
                       static_cast<double>(o.projectedArea) / 100.0,
                       static_cast<double>(o.boxVolume) / 1000.0, direction(upOf(o)));
}

std::string advice(const Options& options, const OptOrientation& chosen) {
    const std::string which = options.rank == 1 ? "Best" : fmt::format("Rank {}", options.rank);
    const UVector3<float> axis = chosen.axis.GetNormal();
    if (axis == UVector3<float>() || chosen.angle == 0.0f) {
        return which + ": leave the part as it is.\n";
    }
    return fmt::format(
        "{}: turn the part {:.2f}° about the axis {}; its direction {} then points "
        "up.\n",
        which, degrees(chosen.angle), direction(axis), direction(upOf(chosen)));
}

}  // namespace

std::string reportTable(const Options& options, const OrientResult& result) {
    std::string text = displayName(options.part.filename()) + ": " + heading(result.part);
    text +=
        "  Rank   Score    Height      Support   Footprint        Box   Direction of the part\n"
        "      (low is   mm             cm³         cm²         cm³   that points up\n"
        "       better)\n";
    for (std::size_t i = 0; i < result.orientations.size(); ++i) {
        text += row(i + 1, static_cast<int>(i) + 1 == options.rank, result.orientations[i]);
    }
    const auto chosen = static_cast<std::size_t>(options.rank - 1);
    return text + "\n" + advice(options, result.orientations[chosen]);
}

}  // namespace App

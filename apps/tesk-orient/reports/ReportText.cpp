#include "reports/ReportText.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <iterator>
#include <numbers>

#include "part/MeshChecks.h"
#include "part/PathText.h"

namespace App {

namespace {

double tidy(float value) {
    const double rounded = std::round(static_cast<double>(value) * 1000.0) / 1000.0;
    return rounded == 0.0 ? 0.0 : rounded;
}

}  // namespace

std::string textOf(const UVector3<float>& direction) {
    return fmt::format("({:.3f}, {:.3f}, {:.3f})", tidy(direction.x), tidy(direction.y),
                       tidy(direction.z));
}

double degreesOf(float angleRad) {
    return static_cast<double>(angleRad) * 180.0 / std::numbers::pi;
}

std::string volumeText(double cubicMillimetres) {
    if (cubicMillimetres >= 1000.0) return fmt::format("{:.3f} cm³", cubicMillimetres / 1000.0);
    return fmt::format("{:.4g} mm³", cubicMillimetres);
}

std::string headingOf(const CommonOptions& options, const LoadedPart& part) {
    const std::array<double, 3> size = sizeOf(part.mesh);
    const std::size_t triangles = part.mesh.triangles.size();
    const std::size_t vertices = part.mesh.positions.size();
    return fmt::format("{}: {}{}{}, {} {}, {} {}, {:.1f} × {:.1f} × {:.1f} mm\n\n",
                       displayName(options.part.filename()), part.form,
                       part.form.empty() ? "" : " ", part.format, triangles,
                       triangles == 1 ? "triangle" : "triangles", vertices,
                       vertices == 1 ? "vertex" : "vertices", size[0], size[1], size[2]);
}

}  // namespace App

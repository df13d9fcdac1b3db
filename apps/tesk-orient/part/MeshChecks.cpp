#include "part/MeshChecks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace App {

namespace {

// Parts below the one and above the other are rare, in millimetres.
constexpr double kSmallPart = 3.0;
constexpr double kLargePart = 2000.0;
// A unit is worth proposing where it makes the part this large.
constexpr double kLeastUsual = 10.0;
constexpr double kMostUsual = 1500.0;

std::string counted(std::int64_t count, const char* one, const char* many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

void checkEdges(const TopologyCounts& topology, Purpose purpose, Warnings& warnings) {
    const auto forSupport = [&](const char* consequence) {
        return purpose == Purpose::kSupport ? consequence : "";
    };
    const char* const doubt = forSupport("; support figures are approximate");
    if (topology.openEdges > 0) {
        warnings.push_back(
            {"open-edges",
             fmt::format("the surface is not closed: {}{}",
                         counted(topology.openEdges, "open edge", "open edges"), doubt),
             topology.openEdges});
    }
    if (topology.nonManifoldEdges > 0) {
        warnings.push_back(
            {"non-manifold-edges",
             fmt::format("{} by more than two triangles{}",
                         counted(topology.nonManifoldEdges, "edge is shared", "edges are shared"),
                         doubt),
             topology.nonManifoldEdges});
    }
    if (topology.inconsistentEdges > 0) {
        warnings.push_back({"inconsistent-winding",
                            fmt::format("triangles face opposite ways across {}{}",
                                        counted(topology.inconsistentEdges, "edge", "edges"),
                                        forSupport("; overhangs may be missed or counted twice")),
                            topology.inconsistentEdges});
    }
}

bool isSound(const TopologyCounts& topology) {
    return topology.openEdges == 0 && topology.nonManifoldEdges == 0 &&
           topology.inconsistentEdges == 0;
}

void checkSide(double volumeSixfold, const TopologyCounts& topology, Purpose purpose,
               Warnings& warnings) {
    if (!isSound(topology) || !(volumeSixfold < 0.0)) return;
    const char* const consequence =
        purpose == Purpose::kSupport ? ", so top surfaces are counted as overhangs" : "";
    warnings.push_back(
        {"inside-out",
         fmt::format("the surface is inside out: its triangles face inward{}", consequence)});
}

std::string proposals(double largestInFile, const LengthUnit& taken) {
    std::string text;
    for (const LengthUnit& unit : lengthUnits().first(4)) {
        const double size = largestInFile * unit.millimetres;
        if (unit.name == taken.name || size < kLeastUsual || size > kMostUsual) continue;
        if (!text.empty()) text += " or ";
        text += fmt::format("--units {} ({:.4g} mm)", unit.name, size);
    }
    return text.empty() ? "check the file's unit" : "if that is wrong, try " + text;
}

void checkSize(const TriangleMesh& mesh, const LengthUnit& unit, Warnings& warnings) {
    const std::array<double, 3> size = sizeOf(mesh);
    const double largest = *std::max_element(size.begin(), size.end());
    if (largest >= kSmallPart && largest <= kLargePart) return;
    warnings.push_back(
        {"unusual-size",
         fmt::format("if the unit is {}, the part is {:.4g} mm long, which is unusually {}; {}",
                     unit.name, largest, largest < kSmallPart ? "small" : "large",
                     proposals(largest / unit.millimetres, unit))});
}

}  // namespace

std::array<double, 3> sizeOf(const TriangleMesh& mesh) {
    return Tesk::extentsOf(mesh.positions);
}

std::optional<double> enclosedVolume(const Tesk::SurfaceMeasures& measures,
                                     const TopologyCounts& topology) {
    if (!isSound(topology)) return std::nullopt;
    return std::fabs(measures.volumeSixfold) / 6.0;
}

Warnings checkMesh(const TriangleMesh& mesh, const TopologyCounts& topology,
                   const Tesk::SurfaceMeasures& measures, const LengthUnit& unit, Purpose purpose) {
    Warnings warnings;
    checkEdges(topology, purpose, warnings);
    checkSide(measures.volumeSixfold, topology, purpose, warnings);
    if (const std::int64_t count = measures.degenerate; count > 0) {
        warnings.push_back({"degenerate-triangles",
                            counted(count, "triangle has no area", "triangles have no area"),
                            count});
    }
    checkSize(mesh, unit, warnings);
    return warnings;
}

}  // namespace App

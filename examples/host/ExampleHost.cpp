// A small host: asks in which orientation a bracket should be built, lists the best answers, and
// finds the smallest box around it. Angles are in radians, lengths in the mesh's unit.

#include <array>
#include <cstdio>
#include <exception>
#include <vector>

#include "MinBoundingBox.h"
#include "OrientOptimizer.h"

namespace {

using Point = UPoint3<float>;
using Corners = UMesh<float>::Corners;

/// An angle bracket: its L-shaped profile from y = 0 to y = depth, standing on the short side.
MeshKernel makeBracket() {
    constexpr float depth = 20.0f;
    constexpr std::array<std::array<float, 2>, 6> profile = {
        {{0, 0}, {15, 0}, {15, 4}, {4, 4}, {4, 60}, {0, 60}}};  // x and z
    std::vector<Point> points;
    for (const float y : {0.0f, depth}) {
        for (const auto& [x, z] : profile) points.emplace_back(x, y, z);
    }
    std::vector<Corners> triangles = {{0, 1, 2}, {0, 2, 3}, {0, 3, 4}, {0, 4, 5}};
    constexpr int count = 6;
    for (int i = 0; i < 4; ++i) {
        const Corners front = triangles[static_cast<std::size_t>(i)];
        triangles.push_back({front[2] + count, front[1] + count, front[0] + count});
    }
    for (int i = 0; i < count; ++i) {
        const int next = (i + 1) % count;
        triangles.push_back({i, i + count, next});
        triangles.push_back({next, i + count, next + count});
    }
    return {points, triangles};
}

void printBestOrientations(MeshKernel& bracket) {
    OptimizeOrient::Configure configure;
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> ranked;
    OptimizeOrient::seedRandom(1);  // the same answer every time
    OrientOptimizer::calculateOrients(&bracket, configure, axis, angle, &ranked, [](int percent) {
        // A host would show it; throwing Tesk::AbortException here ends the call.
        if (percent == 100) std::printf("all orientations looked at\n");
    });
    std::printf("%8s %26s %10s %10s %10s\n", "angle", "about", "height", "overhang", "support");
    for (std::size_t i = 0; i < ranked.size() && i < 3; ++i) {
        const OptimizeOrient::OptOrientation& o = ranked[i];
        std::printf("%8.4f %8.4f %8.4f %8.4f %10.2f %10.2f %10.2f\n", static_cast<double>(o.angle),
                    static_cast<double>(o.axis.x), static_cast<double>(o.axis.y),
                    static_cast<double>(o.axis.z), static_cast<double>(o.height),
                    static_cast<double>(o.overhangArea), static_cast<double>(o.supportVolume));
    }
}

void printSmallestBox(MeshKernel& bracket) {
    std::vector<Point> points;
    const auto mesh = bracket.getMesh();
    for (int i = 0; i < mesh->VertexCount(); ++i) points.push_back(mesh->Vertex(i)->P());
    MinBoundingBox calculator(2);
    const OrientedBox3 box = calculator(static_cast<int>(points.size()), points.data());
    std::printf("smallest box: %g x %g x %g\n", 2.0 * static_cast<double>(box.extent.x),
                2.0 * static_cast<double>(box.extent.y), 2.0 * static_cast<double>(box.extent.z));
}

}  // namespace

int main() {
    try {
        MeshKernel bracket = makeBracket();
        printBestOrientations(bracket);
        printSmallestBox(bracket);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "example_host: %s\n", error.what());
        return 1;
    }
    return 0;
}

// The smallest host: a box that stands upright, and the question how to lay it down.
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <vector>

#include "MinBoundingBox.h"
#include "OrientOptimizer.h"

namespace {

/// A box of 20 × 30 × 80 with a corner at the origin.
MeshKernel standingBox() {
    std::vector<UPoint3<float>> corners;
    for (int i = 0; i < 8; ++i) {
        corners.emplace_back((i & 1) != 0 ? 20.0f : 0.0f, (i & 2) != 0 ? 30.0f : 0.0f,
                             (i & 4) != 0 ? 80.0f : 0.0f);
    }
    const std::vector<UMesh<float>::Corners> triangles = {
        {0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4}, {1, 5, 4},
        {2, 6, 3}, {3, 6, 7}, {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    return {corners, triangles};
}

bool isNear(float value, float expected) {
    return std::abs(value - expected) <= 1e-4f * expected;
}

bool laysTheBoxDown() {
    MeshKernel box = standingBox();
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> ranked;
    int lastPercent = 0;
    OrientOptimizer::calculateOrients(&box, {}, axis, angle, &ranked,
                                      [&](int percent) { lastPercent = percent; });
    if (ranked.size() != 12 || lastPercent != 100) return false;
    const OptimizeOrient::OptOrientation& best = ranked.front();
    std::printf("best of %zu: turn by %.4f about (%g, %g, %g), height %g, box volume %g\n",
                ranked.size(), static_cast<double>(angle), static_cast<double>(axis.x),
                static_cast<double>(axis.y), static_cast<double>(axis.z),
                static_cast<double>(best.height), static_cast<double>(best.boxVolume));
    // Flat on the largest side: a quarter turn about y.
    return isNear(best.height, 20.0f) && isNear(best.boxVolume, 48000.0f) && angle == best.angle &&
           isNear(angle, 1.5707964f);
}

bool findsTheSmallestBox() {
    // A wedge: half of a box of 10 × 10 × 6.
    const std::vector<UPoint3<float>> points = {{0, 0, 0}, {0, 0, 10}, {10, 0, 10},
                                                {0, 6, 0}, {0, 6, 10}, {10, 6, 10}};
    MinBoundingBox calculator;
    const OrientedBox3 box = calculator(static_cast<int>(points.size()), points.data());
    return isNear(8.0f * box.extent.x * box.extent.y * box.extent.z, 600.0f);
}

bool canGiveUp() {
    MeshKernel box = standingBox();
    UVector3<float> axis;
    float angle = 0.0f;
    try {
        OrientOptimizer::calculateOrients(&box, {}, axis, angle, nullptr, [](int percent) {
            if (percent > 10) throw Tesk::AbortException("enough");
        });
    } catch (const Tesk::AbortException&) {
        return true;
    }
    return false;
}

}  // namespace

int main() {
    try {
        if (laysTheBoxDown() && findsTheSmallestBox() && canGiveUp()) return 0;
    } catch (const std::exception& e) {
        std::printf("unexpected: %s\n", e.what());
    }
    std::printf("the consumer did not get what it should\n");
    return 1;
}

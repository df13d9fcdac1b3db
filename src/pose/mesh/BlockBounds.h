#pragma once

#include <cmath>
#include <cstddef>
#include <limits>

#include "TeskDataBasic/UVector3.h"

namespace Tesk::pose {

/// How many facets or vertices, next to one another in the mesh's order, share a bound.
constexpr std::size_t kBlockSize = 64;

/// How many blocks of vertices share a bound once more.
constexpr std::size_t kGroupOfBlocks = 64;

/// Bounds of some vectors, component by component; NaN is ignored. If the bounds rule out a whole
/// block of a mesh, its facets need not be tested one by one.
struct BlockBounds {
    static constexpr float kFar = std::numeric_limits<float>::max();

    UVector3<float> low{kFar, kFar, kFar};
    UVector3<float> high{-kFar, -kFar, -kFar};

    void extend(const UVector3<float>& v) {
        for (int i = 0; i < 3; ++i) {
            low[i] = v[i] < low[i] ? v[i] : low[i];
            high[i] = v[i] > high[i] ? v[i] : high[i];
        }
    }

    void extend(const BlockBounds& other) {
        extend(other.low);
        extend(other.high);
    }

    /// Not above any product with d, rounded as it may be.
    float leastAlong(const UVector3<float>& d) const { return -mostAlong(d * -1.0f); }

    /// Not below any product with d; nor NaN, where bounds are not finite.
    float mostAlong(const UVector3<float>& d) const {
        constexpr float kRounding = 1e-5f;
        float most = 0.0f;
        float size = 0.0f;
        for (int i = 0; i < 3; ++i) {
            const float atLow = low[i] * d[i];
            const float atHigh = high[i] * d[i];
            most += atLow > atHigh ? atLow : atHigh;
            size += std::fabs(atLow) + std::fabs(atHigh);
        }
        const float bound = most + size * kRounding;
        return std::isfinite(bound) ? bound : std::numeric_limits<float>::infinity();
    }
};

}  // namespace Tesk::pose

#pragma once

#include <cmath>
#include <cstddef>
#include <limits>

#include "TeskDataBasic/UVector3.h"

namespace Tesk::pose {

/// How many facets or vertices, next to one another in the mesh's order, share a bound.
constexpr std::size_t kBlockSize = 64;

/// How many blocks of vertices share a bound once more.
constexpr std::size_t kGroupOfBlocks = 16;

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

    /// Lower and upper bounds of products.
    struct Range {
        float least, most;
    };

    /// Bounds of all products with d, with room for their rounding; infinite, and never NaN, if
    /// bounds are not finite.
    Range along(const UVector3<float>& d) const {
        constexpr float kRounding = 1e-5f;
        constexpr float kInfinity = std::numeric_limits<float>::infinity();
        Range range = {0.0f, 0.0f};
        float size = 0.0f;
        for (int i = 0; i < 3; ++i) {
            const float atLow = low[i] * d[i];
            const float atHigh = high[i] * d[i];
            range.least += atLow < atHigh ? atLow : atHigh;
            range.most += atLow > atHigh ? atLow : atHigh;
            size += std::fabs(atLow) + std::fabs(atHigh);
        }
        range.least -= size * kRounding;
        range.most += size * kRounding;
        // Infinite products make NaN of the other bound, too.
        if (!std::isfinite(range.most) || !std::isfinite(range.least))
            return {-kInfinity, kInfinity};
        return range;
    }

    float leastAlong(const UVector3<float>& d) const { return along(d).least; }
    float mostAlong(const UVector3<float>& d) const { return along(d).most; }
};

}  // namespace Tesk::pose

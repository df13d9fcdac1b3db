#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "TeskDataBasic/UPoint3.h"

namespace Tesk::hull {

/// A point on the hull's grid: whole numbers of grid steps from the points' lowest corner, at most
/// 2^26 + 1 in each coordinate.
struct GridPoint {
    std::int32_t x;
    std::int32_t y;
    std::int32_t z;

    bool operator==(const GridPoint&) const = default;
    auto operator<=>(const GridPoint&) const = default;
};

/// The finite points of a set, rounded to a grid of 2^-26 of the largest extent, that rounded up
/// to a power of two.
struct GridPoints {
    std::vector<GridPoint> points;
    double step = 0.0;
    std::array<double, 3> lowest{};  ///< of the corner, in steps from the origin

    /// The rounded point in its own frame, which a float expresses exactly.
    UPoint3<float> position(const GridPoint& p) const;
};

GridPoints roundToGrid(const UPoint3<float>* points, int n);

}  // namespace Tesk::hull

#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "TeskDataBasic/UPoint3.h"

namespace Tesk::hull {

/// A point of the hull's grid, in steps from the lowest corner of the points' box: 0 to 2^26 + 1 in
/// each coordinate.
struct GridPoint {
    std::int32_t x;
    std::int32_t y;
    std::int32_t z;

    bool operator==(const GridPoint&) const = default;
    auto operator<=>(const GridPoint&) const = default;
};

/// The finite points of a set, rounded to a grid. Its step is 2^-26 times the smallest power of two
/// that is at least the largest extent.
struct GridPoints {
    std::vector<GridPoint> points;
    double step = 0.0;
    std::array<double, 3> lowest{};  ///< the lowest corner, in steps from the origin

    /// A grid point as a position in the frame of the given points: exactly a float.
    UPoint3<float> position(const GridPoint& p) const;
};

GridPoints roundToGrid(const UPoint3<float>* points, int n);

}  // namespace Tesk::hull

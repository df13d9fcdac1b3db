#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "GridPoints.h"

namespace Tesk::hull {

/// What the points span, decided exactly, and dimension + 1 of the points that span it.
struct Span {
    int dimension = -1;  ///< −1 for no points, else 0..3
    std::array<std::int32_t, 4> points{};
};

Span findSpan(const std::vector<GridPoint>& points);

/// A hull triangle: point indices counter-clockwise from outside, and the triangle across each
/// edge, where edge k runs from corner k to corner (k + 1) mod 3.
struct HullFacet {
    std::array<std::int32_t, 3> corners;
    std::array<std::int32_t, 3> neighbours;
};

/// The hull of points that span space, as a closed and exactly convex surface of triangles, none of
/// which has zero area. Triangles may be coplanar, and a corner may lie inside a face or an edge.
/// Which of the possible triangulations it is depends on the order of the points.
std::vector<HullFacet> quickHull(const std::vector<GridPoint>& points, const Span& span);

}  // namespace Tesk::hull

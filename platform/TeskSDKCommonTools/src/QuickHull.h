#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "GridPoints.h"

namespace Tesk::hull {

/// What the points span, found exactly, with points that span it: `count` of them, which for four
/// form a tetrahedron.
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

/// The hull of points that span space, as a closed surface of triangles that is convex exactly.
/// Triangles may lie in one plane, and a corner may lie inside a face or an edge; no triangle has
/// zero area. Which such surface comes out depends on the points' order.
std::vector<HullFacet> quickHull(const std::vector<GridPoint>& points, const Span& span);

}  // namespace Tesk::hull

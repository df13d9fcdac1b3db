#pragma once

#include <cstddef>
#include <vector>

#include "TeskDataBasic/UPoint2.h"

namespace Tesk::minbox {

using PlanePolygon = std::vector<UPoint2<double>>;

/// The longer side of a polygon's axis-aligned rectangle; 0 for an empty polygon.
double extentOf(const PlanePolygon& polygon);

/// Removes the corners of a convex polygon that rounding may have caused. A corner is removed if it
/// lies within the tolerance of the segment between the kept corners on either side of it. Starts
/// at the corner farthest from the first one, and extends each run of removed corners as far as it
/// can. A very thin polygon may be left with two corners.
///
/// @param polygon  strictly convex, counter-clockwise; unchanged if it has fewer than three corners
/// Cost linear.
PlanePolygon withoutNearCorners(const PlanePolygon& polygon, double tolerance);

/// The edge on which the rectangle of least area around a convex polygon stands, given by the index
/// of its first corner; of equal areas the lowest. A polygon of two corners has a rectangle without
/// height.
///
/// @param polygon  at least two different corners, counter-clockwise; convex except for rounding
/// Cost linear.
///
/// Source: H. Freeman and R. Shapira, "Determining the minimum-area encasing rectangle for an
/// arbitrary closed curve", CACM 18 (1975).
std::size_t leastRectangleEdge(const PlanePolygon& polygon);

}  // namespace Tesk::minbox

#pragma once

#include <cstddef>
#include <vector>

#include "TeskDataBasic/UPoint2.h"

namespace Tesk::minbox {

using PlanePolygon = std::vector<UPoint2<double>>;

/// The larger side of a polygon's rectangle along the coordinates; 0 where it has no corner.
double extentOf(const PlanePolygon& polygon);

/// A convex polygon without the corners that rounding may have put there. Beginning at an end of
/// the polygon, a corner is followed by the last one up to which all corners in between may go:
/// each of them lies within the tolerance of the corner before, or ahead of it, within the
/// tolerance of the line to the one after and no more than that farther away. Where the polygon is
/// that thin, two corners may be all that stays.
///
/// @param polygon  strictly convex, counter-clockwise; kept as it is where it has fewer than three
///                 corners
/// Cost linear.
PlanePolygon withoutNearCorners(const PlanePolygon& polygon, double tolerance);

/// The edge that a rectangle of least area around a convex polygon stands on: the position of the
/// corner where it starts, of equal areas the lowest. Looks at all edges; the rectangle of a
/// polygon of two corners has no height.
///
/// @param polygon  at least two corners, counter-clockwise, none twice; convex but for rounding
/// Cost linear.
///
/// Source: H. Freeman and R. Shapira, "Determining the minimum-area encasing rectangle for an
/// arbitrary closed curve", CACM 18 (1975).
std::size_t leastRectangleEdge(const PlanePolygon& polygon);

}  // namespace Tesk::minbox

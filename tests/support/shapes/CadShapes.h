#pragma once

#include <vector>

#include "TeskDataBasic/UPoint2.h"
#include "shapes/Part.h"

using Polygon = std::vector<UPoint2<float>>;

/// n points on a circle about the origin, counter-clockwise, the first on the x axis.
Polygon regularPolygon(float radius, int n);

/// A solid over a counter-clockwise polygon, z from low to high. Its caps are fans about the first
/// point, so the whole polygon must be visible from there.
Part makeExtrusion(const Polygon& outline, float low, float high);

/// A solid between two counter-clockwise polygons of equally many points, one inside the other.
Part makeRing(const Polygon& outer, const Polygon& inner, float low, float high);

/// A column 2 × 6 × 8 with an arm [2,10] × [0,6] × [6,8] at its upper end; two touching boxes.
Part makeColumnWithArm();

/// The prism over the XZ triangle (0,0), (0,10), (10,10), y from 0 to 6: a 45° overhang.
Part makePrism();

/// An L of two legs along x and y, each `thickness` thick, z from 0 to `width`.
Part makeBracket(float legX, float legY, float thickness, float width);

/// A gear with a hub hole; teeth alternate between two radii.
Part makeGear(int teeth, float radius, float thickness);

/// A square plate of the given size with nx × ny round holes of `segments` sides.
Part makePlateWithHoles(int nx, int ny, float cell, float thickness, int segments);

/// Boxes of one size side by side and on top of each other: many surfaces at equal heights.
Part makeStack(int nx, int ny, int nz, float size);

/// Two boxes that share a face, one that shares an edge and one that shares a corner.
Part makeTouchingSolids();

/// A table: a plate on four legs.
Part makeTable();

/// CAD-like parts put together at random from boxes, brackets, cylinders, gears and plates.
Part makeRandomAssembly(std::uint64_t seed);

#pragma once

#include <vector>

#include "minbox/hull/HullPoints.h"

namespace Tesk::minbox {

/// A cyclic list of hull vertices. Seen along a direction it is a convex polygon, counter-clockwise
/// about the direction, without repeated vertices and without three in line. A position is an index
/// into it.
using Outline = std::vector<int>;

/// Drops vertices in line with their neighbours, and a last vertex that repeats the first.
void removeCollinear(const HullPoints& points, const Vector& direction, Outline& outline);

/// Drops each vertex whose edge to the next one is so nearly parallel to the direction that
/// rounding determines how it points across the direction. No box can be flush with such an edge,
/// and it would mislead the calipers.
void removeSteep(const HullPoints& points, const Vector& direction, Outline& outline);

}  // namespace Tesk::minbox

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

/// Drops vertices from which an edge runs so nearly along the direction that rounding decides how
/// it points across it. No box can be flush with such an edge, and calipers that meet one lose
/// their way.
void removeSteep(const HullPoints& points, const Vector& direction, Outline& outline);

}  // namespace Tesk::minbox

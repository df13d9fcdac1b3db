#pragma once

#include <array>

#include "minbox/hull/HullPoints.h"

namespace Tesk::minbox {

/// The box of a hull without faces, which has one or two vertices: that of a point has the axes
/// X, Y, Z; that of a segment has its first axis along it and no extent across it.
BoxFrame lowDimensionFrame(const HullPoints& points);

/// The box of one or more vertices along axes that are orthogonal and not zero.
BoxFrame frameAlong(const HullPoints& points, const std::array<Vector, 3>& axes);

}  // namespace Tesk::minbox

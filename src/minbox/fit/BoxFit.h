#pragma once

#include <array>

#include "OrientedBox3.h"
#include "minbox/hull/HullPoints.h"

namespace Tesk::minbox {

/// The box of a hull without faces, which has one or two vertices: that of a point has the axes
/// X, Y, Z; that of a segment has its first axis along it and no extent across it.
BoxFrame lowDimensionFrame(const HullPoints& points);

/// The box of one or more vertices along axes that are orthogonal and not zero.
BoxFrame frameAlong(const HullPoints& points, const std::array<Vector, 3>& axes);

/// The box with unit axes and half-lengths, in the caller's unit.
OrientedBox3 toOrientedBox(const HullPoints& points, const BoxFrame& frame);

/// A frame's volume in the caller's unit.
double callersVolume(const HullPoints& points, const BoxFrame& frame);

/// The result of a search that finds no box.
OrientedBox3 noBox();

}  // namespace Tesk::minbox

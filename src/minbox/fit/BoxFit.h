#pragma once

#include <array>

#include "minbox/hull/HullPoints.h"

namespace Tesk::minbox {

/// What checkFrame() has found.
enum class FrameState {
    kSound,       ///< the frame encloses all hull vertices
    kRemeasured,  ///< it did not: its ranges now do, and what follows from them must be formed anew
    kDropped,     ///< its axes are not orthogonal, or not of finite length
};

/// Checks whether a frame is a box around the hull, and measures its ranges anew if it is too
/// small. A silhouette edge that runs nearly along the direction can lead to a frame that is not,
/// and which would win by its small volume. Linear in the number of vertices.
FrameState checkFrame(const HullPoints& points, BoxFrame& frame);

/// The box of a hull without faces, which has one or two vertices: that of a point has the axes
/// X, Y, Z; that of a segment has its first axis along it and no extent across it.
BoxFrame lowDimensionFrame(const HullPoints& points);

/// The box of one or more vertices along axes that are orthogonal and not zero.
BoxFrame frameAlong(const HullPoints& points, const std::array<Vector, 3>& axes);

/// The box with unit axes and half-lengths, in the caller's unit.
OrientedBox3 toOrientedBox(const HullPoints& points, const BoxFrame& frame);

/// A frame's volume in the caller's unit.
double callersVolume(const HullPoints& points, const BoxFrame& frame);

}  // namespace Tesk::minbox

#pragma once

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

/// The box with unit axes and half-lengths, in the caller's unit.
OrientedBox3 toOrientedBox(const HullPoints& points, const BoxFrame& frame);

/// A frame's volume in the caller's unit.
double callersVolume(const HullPoints& points, const BoxFrame& frame);

}  // namespace Tesk::minbox

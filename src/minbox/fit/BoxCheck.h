#pragma once

#include "minbox/hull/HullPoints.h"

namespace Tesk::minbox {

/// What checkFrame() has found.
enum class FrameState {
    kSound,       ///< the box contains all hull vertices
    kRemeasured,  ///< it did not; its ranges do now, but its volume and other measures are stale
    kDropped,     ///< its axes are not orthogonal, or not of finite length
};

/// Checks that a box contains all hull vertices. If it does not, replaces its ranges by those of
/// the hull.
///
/// A silhouette edge that runs nearly along the direction can lead to a box that is too small and
/// would therefore win. Linear in the number of vertices.
FrameState checkFrame(const HullPoints& points, BoxFrame& frame);

}  // namespace Tesk::minbox

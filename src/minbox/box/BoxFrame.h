#pragma once

#include <array>

#include "minbox/box/Vector.h"

namespace Tesk::minbox {

/// The range of the projections (p − origin) · axis over all hull vertices p, not divided by the
/// axis's length.
struct Range {
    double min = 0.0;
    double max = 0.0;

    double length() const { return max - min; }
    bool operator==(const Range&) const = default;
};

/// A box whose axes are not normalised.
struct BoxFrame {
    Vector origin;
    std::array<Vector, 3> axes;
    std::array<double, 3> squaredLengths{};  ///< of the axes
    std::array<Range, 3> ranges;
    double volume = -1.0;

    bool operator==(const BoxFrame&) const = default;
};

/// The volume of a frame whose first axis is as long as the product of the other two, as the
/// rectangles of the calipers make it.
double volumeOf(const BoxFrame& frame);

/// Whether the axes have finite lengths and are orthogonal to each other.
bool hasOrthogonalAxes(const BoxFrame& frame);

}  // namespace Tesk::minbox

#include "minbox/fit/LowDimensionBox.h"

#include <cmath>

namespace Tesk::minbox {

BoxFrame frameAlong(const HullPoints& points, const std::array<Vector, 3>& axes) {
    BoxFrame frame;
    frame.origin = points[0];
    frame.axes = axes;
    frame.volume = 1.0;
    for (std::size_t i = 0; i < 3; ++i) {
        frame.squaredLengths[i] = axes[i] | axes[i];
        frame.ranges[i] = points.rangeAlong(frame.origin, axes[i]);
        frame.volume *= frame.ranges[i].length() / std::sqrt(frame.squaredLengths[i]);
    }
    return frame;
}

BoxFrame lowDimensionFrame(const HullPoints& points) {
    TESK_ASSERT(points.count() == 1 || points.count() == 2);
    if (points.count() == 1) {
        return frameAlong(points, {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)});
    }
    const Vector along = points[1] - points[0];
    const Vector across = anyOrthogonal(along);
    BoxFrame frame = frameAlong(points, {along, across, along * across});
    // Rounding must not give a segment a width.
    for (const std::size_t i : {1u, 2u}) {
        const double middle = (frame.ranges[i].min + frame.ranges[i].max) / 2.0;
        frame.ranges[i] = {middle, middle};
    }
    return frame;
}

}  // namespace Tesk::minbox

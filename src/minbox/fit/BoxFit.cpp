#include "minbox/fit/BoxFit.h"

#include <algorithm>
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

OrientedBox3 toOrientedBox(const HullPoints& points, const BoxFrame& frame) {
    const SearchConstants& constants = points.constants();
    OrientedBox3 box;
    Vector center = frame.origin;
    for (std::size_t i = 0; i < 3; ++i) {
        const Range& range = frame.ranges[i];
        const double squaredLength = frame.squaredLengths[i];
        center =
            center + frame.axes[i] * ((range.min + range.max) * constants.half / squaredLength);
        const double halfLength = range.length() * constants.half;
        const float extent = std::sqrt(static_cast<float>(halfLength * halfLength / squaredLength));
        box.extent[static_cast<int>(i)] =
            static_cast<float>(static_cast<double>(extent) * points.unitLength());
        const Vector& axis = frame.axes[i];
        const double largest = std::max({std::fabs(axis.x), std::fabs(axis.y), std::fabs(axis.z)});
        box.axis[i] = (axis * (constants.one / largest)).As<float>().GetNormal();
    }
    box.center = (center * points.unitLength()).As<float>();
    return box;
}

double callersVolume(const HullPoints& points, const BoxFrame& frame) {
    const double unit = points.unitLength();
    return unit * unit * unit * frame.volume;
}

OrientedBox3 noBox() {
    const UVector3<float> ones(1.0f, 1.0f, 1.0f);
    return {UVector3<float>(), {ones, ones, ones}, ones};
}

}  // namespace Tesk::minbox

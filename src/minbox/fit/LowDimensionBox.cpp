#include "minbox/fit/LowDimensionBox.h"

#include <cmath>

Vector anyOrthogonal(const Vector& v) {
    // Crossed with the coordinate axis that it runs along least.
    const Vector size{std::fabs(v.x), std::fabs(v.y), std::fabs(v.z)};
    if (size.x <= size.y && size.x <= size.z) return v * Vector(1, 0, 0);
    if (size.y <= size.z) return v * Vector(0, 1, 0);
    return v * Vector(0, 0, 1);
}

OrientedBox3 boxAlong(MinBoundingBoxImpl& impl, const std::array<Vector, 3>& axes) {
    BoxFrame frame;
    frame.origin = hullPoint(impl, 0);
    frame.axes = axes;
    frame.volume = 1.0;
    for (std::size_t i = 0; i < 3; ++i) {
        frame.squaredLengths[i] = axes[i] | axes[i];
        frame.ranges[i] = rangeAlong(impl, frame.origin, axes[i]);
        frame.volume *= frame.ranges[i].length() / std::sqrt(frame.squaredLengths[i]);
    }
    return toOrientedBox(impl, frame);
}

OrientedBox3 lowDimensionBox(MinBoundingBoxImpl& impl) {
    const int count = hullVertexCount(impl);
    if (count == 0) return noBox();
    if (count == 1) return boxAlong(impl, {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)});
    const Vector along = hullPoint(impl, 1) - hullPoint(impl, 0);
    const Vector across = anyOrthogonal(along);
    OrientedBox3 box = boxAlong(impl, {along, across, along * across});
    // Rounding must not give a segment a width.
    box.extent.y = 0.0f;
    box.extent.z = 0.0f;
    return box;
}

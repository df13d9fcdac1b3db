#include "minbox/fit/BoxCheck.h"

#include <cmath>

namespace Tesk::minbox {
namespace {

/// How far outside a vertex may lie, relative to the hull's diagonal: more than rounding gives.
constexpr double kOutside = 1e-9;

bool holdsAllVertices(const HullPoints& points, const BoxFrame& frame) {
    const double slack = kOutside * points.diagonal();
    std::array<Range, 3> limits = frame.ranges;
    for (std::size_t m = 0; m < 3; ++m) {
        const double axisSlack = slack * std::sqrt(frame.squaredLengths[m]);
        limits[m] = {limits[m].min - axisSlack, limits[m].max + axisSlack};
    }
    for (int i = 0; i < points.count(); ++i) {
        const Vector d = points[i] - frame.origin;
        for (std::size_t m = 0; m < 3; ++m) {
            const double x = d | frame.axes[m];
            if (!(x >= limits[m].min && x <= limits[m].max)) return false;
        }
    }
    return true;
}

}  // namespace

FrameState checkFrame(const HullPoints& points, BoxFrame& frame) {
    if (!hasOrthogonalAxes(frame)) return FrameState::kDropped;
    if (holdsAllVertices(points, frame)) return FrameState::kSound;
    for (std::size_t m = 0; m < 3; ++m) {
        frame.ranges[m] = points.rangeAlong(frame.origin, frame.axes[m]);
    }
    return FrameState::kRemeasured;
}

}  // namespace Tesk::minbox

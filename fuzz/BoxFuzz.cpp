// Any points, every operation: the box holds all finite points, and is the same for other threads.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "MinBoundingBox.h"
#include "PointsInput.h"

namespace {

using Points = std::vector<UPoint3<float>>;

constexpr int kOperations = 5;

OrientedBox3 boxOf(int operation, unsigned int threads, const Points& points,
                   const UVector3<float>& axis) {
    const int count = static_cast<int>(points.size());
    MinBoundingBox calculator(threads);
    switch (operation) {
        case 0:
            return calculator(count, points.data());
        case 1:
            return calculator.minBaseAreaBox(count, points.data());
        case 2:
            return calculator.minBaseAreaAndHeightBox(count, points.data());
        case 3:
            return calculator.minBaseAreaBoxAroundAxis(count, points.data(), axis);
        default:
            return MinBoundingBox::generateOBB(points.data(), count);
    }
}

bool isFinite(const UPoint3<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool isNoBox(const OrientedBox3& box) {
    const UVector3<float> ones(1, 1, 1);
    return box.center == UVector3<float>() && box.axis[0] == ones && box.axis[1] == ones &&
           box.axis[2] == ones && box.extent == ones;
}

bool reachesEndOfFloats(const Points& points) {
    constexpr float kEnd = std::numeric_limits<float>::max() / 4.0f;
    return std::any_of(points.begin(), points.end(), [](const UPoint3<float>& p) {
        return std::fabs(p.x) > kEnd || std::fabs(p.y) > kEnd || std::fabs(p.z) > kEnd;
    });
}

/// Whether there may be no box: without finite points; around an axis that has no direction or is
/// so close to Z that floats do not tell them apart; along principal axes where a point is not
/// finite, or the full lengths may be too large for a float.
bool mayHaveNoBox(int operation, const Points& points, const UVector3<float>& axis) {
    const auto finite = std::count_if(points.begin(), points.end(), isFinite);
    if (finite == 0) return true;
    if (operation == 4) {
        return finite < static_cast<std::ptrdiff_t>(points.size()) || reachesEndOfFloats(points);
    }
    if (operation != 3 || axis == UVector3<float>(0, 0, 1)) return false;
    const float across = std::fmax(std::fabs(axis.x), std::fabs(axis.y));
    return !isFinite({axis.x, axis.y, axis.z}) || across <= 1e-30f * std::fabs(axis.z);
}

/// The size of the points, and of the largest coordinate, whose rounding no box can do without.
double scaleOf(const Points& points) {
    double scale = 0.0;
    for (const UPoint3<float>& p : points) {
        for (int i = 0; i < 3 && isFinite(p); ++i) {
            scale = std::fmax(scale, std::fabs(static_cast<double>(p[i])));
        }
    }
    return scale;
}

void expectHolds(const OrientedBox3& box, const Points& points, double half) {
    const double slack = 4e-6 * scaleOf(points) + 1e-42;
    for (const UPoint3<float>& p : points) {
        if (!isFinite(p)) continue;
        const auto d = (p - UPoint3<float>()).As<double>() - box.center.As<double>();
        for (int i = 0; i < 3; ++i) {
            const double x = std::fabs(d | box.axis[i].As<double>());
            if (!(x <= half * static_cast<double>(box.extent[i]) + slack)) std::abort();
        }
    }
}

void expectFrame(const OrientedBox3& box) {
    for (int i = 0; i < 3; ++i) {
        const auto axis = box.axis[i].As<double>();
        if (!(std::fabs(axis.GetLength() - 1.0) < 1e-5)) std::abort();
        if (!(std::fabs(axis | box.axis[(i + 1) % 3].As<double>()) < 1e-5)) std::abort();
        if (!(box.extent[i] >= 0.0f)) std::abort();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    const int operation = input.take<std::uint8_t>() % kOperations;
    UVector3<float> axis;
    for (int i = 0; i < 3; ++i) axis[i] = takeCoordinate(input);
    const Points points = takePoints(input);
    const OrientedBox3 box = boxOf(operation, 1, points, axis);
    const OrientedBox3 other = boxOf(operation, 3, points, axis);
    if (std::memcmp(&box, &other, sizeof box) != 0) std::abort();
    if (isNoBox(box)) {
        if (!mayHaveNoBox(operation, points, axis)) std::abort();
        return 0;
    }
    expectFrame(box);
    expectHolds(box, points, operation == 4 ? 0.5 : 1.0);
    return 0;
}

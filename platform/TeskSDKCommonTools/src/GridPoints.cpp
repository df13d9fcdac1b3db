#include "GridPoints.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tesk::hull {
namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();

bool isFinite(const UPoint3<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

double largestExtent(const std::array<double, 3>& low, const std::array<double, 3>& high) {
    return std::max({high[0] - low[0], high[1] - low[1], high[2] - low[2]});
}

/// 2^-26 of the smallest power of two that is at least the extent.
double gridStep(double extent) {
    int exponent = 0;
    const double mantissa = std::frexp(extent, &exponent);  // in [1/2, 1)
    if (mantissa == 0.5) --exponent;
    return std::ldexp(1.0, exponent - 26);
}

/// The nearest whole number of steps; halves go up. Exact, as the step is a power of two.
double inSteps(float value, double step) {
    return std::floor(static_cast<double>(value) / step + 0.5);
}

}  // namespace

UPoint3<float> GridPoints::position(const GridPoint& p) const {
    return {static_cast<float>((p.x + lowest[0]) * step),
            static_cast<float>((p.y + lowest[1]) * step),
            static_cast<float>((p.z + lowest[2]) * step)};
}

GridPoints roundToGrid(const UPoint3<float>* points, int n) {
    std::array<double, 3> low = {kFar, kFar, kFar};
    std::array<double, 3> high = {-kFar, -kFar, -kFar};
    std::size_t count = 0;
    for (int i = 0; i < n; ++i) {
        if (!isFinite(points[i])) continue;
        ++count;
        for (int axis = 0; axis < 3; ++axis) {
            const auto k = static_cast<std::size_t>(axis);
            low[k] = std::min(low[k], static_cast<double>(points[i][axis]));
            high[k] = std::max(high[k], static_cast<double>(points[i][axis]));
        }
    }
    GridPoints grid;
    if (count == 0) return grid;
    const double extent = largestExtent(low, high);
    // A single point needs no grid; any step that keeps its coordinates whole will do.
    grid.step = extent > 0.0 ? gridStep(extent) : std::ldexp(1.0, -149);
    for (std::size_t k = 0; k < 3; ++k) {
        grid.lowest[k] = inSteps(static_cast<float>(low[k]), grid.step);
    }
    grid.points.reserve(count);
    for (int i = 0; i < n; ++i) {
        if (!isFinite(points[i])) continue;
        const auto coordinate = [&](int axis) {
            const double steps = inSteps(points[i][axis], grid.step);
            return static_cast<std::int32_t>(steps - grid.lowest[static_cast<std::size_t>(axis)]);
        };
        grid.points.push_back({coordinate(0), coordinate(1), coordinate(2)});
    }
    return grid;
}

}  // namespace Tesk::hull

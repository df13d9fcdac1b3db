#include "TeskSDKCommonTools/ConvexHull2.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "ExactTurn.h"
#include "MonotoneChain.h"

namespace gte {
namespace {

using namespace Tesk::hull;

struct IndexedPoint {
    PlanePoint point;
    int index;
};

/// The finite points by ascending x, then y, each only once.
std::vector<IndexedPoint> sortedPoints(const std::vector<double>& coordinates, int count) {
    std::vector<IndexedPoint> points;
    const auto available = static_cast<std::ptrdiff_t>(coordinates.size() / 2);
    for (std::ptrdiff_t i = 0; i < std::min<std::ptrdiff_t>(count, available); ++i) {
        const PlanePoint p{coordinates[static_cast<std::size_t>(2 * i)],
                           coordinates[static_cast<std::size_t>(2 * i + 1)]};
        if (std::isfinite(p.x) && std::isfinite(p.y)) points.push_back({p, static_cast<int>(i)});
    }
    std::sort(points.begin(), points.end(), [](const IndexedPoint& a, const IndexedPoint& b) {
        if (a.point.x != b.point.x) return a.point.x < b.point.x;
        return a.point.y != b.point.y ? a.point.y < b.point.y : a.index < b.index;
    });
    const auto areEqual = [](const IndexedPoint& a, const IndexedPoint& b) {
        return a.point.x == b.point.x && a.point.y == b.point.y;
    };
    points.erase(std::unique(points.begin(), points.end(), areEqual), points.end());
    return points;
}

bool turnsLeft(const IndexedPoint& a, const IndexedPoint& b, const IndexedPoint& c) {
    return turnOf(a.point, b.point, c.point) > 0;
}

}  // namespace

ConvexHull2::ConvexHull2(const std::vector<double>& coordinates, int count) {
    const std::vector<IndexedPoint> points = sortedPoints(coordinates, count);
    if (points.size() == 1) {
        m_indices.push_back(points.front().index);
        return;
    }
    appendConvexPolygon(points, turnsLeft, m_indices);
}

}  // namespace gte

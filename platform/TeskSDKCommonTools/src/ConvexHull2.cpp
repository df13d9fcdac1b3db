#include "TeskSDKCommonTools/ConvexHull2.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "ExactTurn.h"

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

/// The corners on the right of the way from the first to the last point; the last is left out.
template <class Iterator>
void appendChain(Iterator begin, Iterator end, std::vector<int>& corners) {
    std::vector<IndexedPoint> chain;
    for (; begin != end; ++begin) {
        while (chain.size() >= 2 &&
               turnOf(chain[chain.size() - 2].point, chain.back().point, begin->point) <= 0) {
            chain.pop_back();
        }
        chain.push_back(*begin);
    }
    for (std::size_t i = 0; i + 1 < chain.size(); ++i) corners.push_back(chain[i].index);
}

}  // namespace

ConvexHull2::ConvexHull2(const std::vector<double>& coordinates, int count) {
    const std::vector<IndexedPoint> points = sortedPoints(coordinates, count);
    if (points.size() == 1) {
        m_indices.push_back(points.front().index);
        return;
    }
    appendChain(points.begin(), points.end(), m_indices);
    appendChain(points.rbegin(), points.rend(), m_indices);
}

}  // namespace gte

#include "minbox/hull/HeightFinder.h"

#include <algorithm>
#include <limits>

namespace Tesk::minbox {
namespace {

/// A height difference, relative to the hull's size times the direction's length, far above what
/// rounding does to a height.
constexpr double kNear = 1e-12;

}  // namespace

HeightFinder::HeightFinder(const SearchHull& hull)
    : m_points(hull.points()),
      m_links(hull.links()),
      m_visited(static_cast<std::size_t>(hull.points().count()), 0) {
    TESK_ASSERT(hull.hasFaces());
    m_pending.reserve(m_visited.size());
}

Range HeightFinder::rangeAlong(const Vector& origin, const Vector& direction) {
    const std::optional<double> depth = greatest(m_lowest, origin, direction, -1.0);
    const std::optional<double> height = greatest(m_highest, origin, direction, 1.0);
    if (!depth || !height) return m_points.rangeAlong(origin, direction);
    const double zero = m_points.constants().zero;
    // A bound of zero is +0.
    return {std::min(zero, -*depth), std::max(zero, *height)};
}

/// The greatest value of height times sign; std::nullopt if so many vertices are near it that a
/// scan of all is faster. The climb starts at `start`, which is set to its summit.
std::optional<double> HeightFinder::greatest(int& start, const Vector& origin,
                                             const Vector& direction, double sign) {
    // More than the vertices near the highest one, unless it is on a flat side.
    constexpr std::size_t kVisitsOfSmallHull = 16;
    const auto height = [&](int vertex) {
        return sign * ((m_points[vertex] - origin) | direction);
    };
    std::size_t visits = 0;
    start = m_links.climb(start, height, std::numeric_limits<std::size_t>::max(), visits);
    const double near = kNear * m_points.diameterBound() * direction.GetLength();
    ++m_stamp;
    double best = height(start);
    m_visited[static_cast<std::size_t>(start)] = m_stamp;
    m_pending.assign(1, start);
    std::size_t left = kVisitsOfSmallHull + m_visited.size() / 16;
    while (!m_pending.empty()) {
        if (left-- == 0) return std::nullopt;
        const int vertex = m_pending.back();
        m_pending.pop_back();
        for (const int neighbour : m_links.neighbours(vertex)) {
            int& visited = m_visited[static_cast<std::size_t>(neighbour)];
            if (visited == m_stamp) continue;
            visited = m_stamp;
            const double there = height(neighbour);
            if (there < best - near) continue;
            best = std::max(best, there);
            m_pending.push_back(neighbour);
        }
    }
    return best;
}

}  // namespace Tesk::minbox

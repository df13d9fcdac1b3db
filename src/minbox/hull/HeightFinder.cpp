#include "minbox/hull/HeightFinder.h"

#include <algorithm>
#include <cmath>

namespace {

/// Of the hull's size times the direction's length: far above what rounding does to a height.
constexpr double kNear = 1e-12;
/// With a sixteenth of all, more than are near the highest but on a flat side, which has all its
/// corners at one height.
constexpr std::size_t kMany = 16;

double sizeBound(const MinBoundingBoxImpl& impl) {
    double largest = 0.0;
    for (int i = 0; i < hullVertexCount(impl); ++i) {
        const Vector d = hullPoint(impl, i) - hullPoint(impl, 0);
        largest = std::max(largest, d | d);
    }
    return 2.0 * std::sqrt(largest);
}

}  // namespace

HeightFinder::HeightFinder(const MinBoundingBoxImpl& impl, const HullLinks& links)
    : m_impl(impl),
      m_links(links),
      m_size(sizeBound(impl)),
      m_seen(static_cast<std::size_t>(hullVertexCount(impl)), 0) {
    m_pending.reserve(m_seen.size());
}

Range HeightFinder::rangeAlong(const Vector& origin, const Vector& direction) {
    m_lowest = climb(m_lowest, origin, direction, -1.0);
    m_highest = climb(m_highest, origin, direction, 1.0);
    const std::optional<double> depth = farthest(m_lowest, origin, direction, -1.0);
    const std::optional<double> height = farthest(m_highest, origin, direction, 1.0);
    if (!depth || !height) return ::rangeAlong(m_impl, origin, direction);
    const double low = -*depth;
    const double high = *height;
    // The range holds 0, as the origin is one of the vertices.
    return {low < m_impl.zero ? low : m_impl.zero, high > m_impl.zero ? high : m_impl.zero};
}

int HeightFinder::climb(int vertex, const Vector& origin, const Vector& direction,
                        double sign) const {
    double here = sign * height(vertex, origin, direction);
    for (;;) {
        int best = vertex;
        for (const int* n = m_links.neighboursBegin(vertex); n != m_links.neighboursEnd(vertex);
             ++n) {
            const double there = sign * height(*n, origin, direction);
            if (there > here) {
                here = there;
                best = *n;
            }
        }
        if (best == vertex) return vertex;
        vertex = best;
    }
}

/// The greatest height times the sign; nothing where so many vertices are near it that to look at
/// all of the hull takes less.
std::optional<double> HeightFinder::farthest(int start, const Vector& origin,
                                             const Vector& direction, double sign) {
    const double near = kNear * m_size * direction.GetLength();
    ++m_stamp;
    double best = sign * height(start, origin, direction);
    m_seen[static_cast<std::size_t>(start)] = m_stamp;
    m_pending.assign(1, start);
    std::size_t left = kMany + m_seen.size() / 16;
    while (!m_pending.empty()) {
        if (left-- == 0) return std::nullopt;
        const int vertex = m_pending.back();
        m_pending.pop_back();
        for (const int* n = m_links.neighboursBegin(vertex); n != m_links.neighboursEnd(vertex);
             ++n) {
            int& seen = m_seen[static_cast<std::size_t>(*n)];
            if (seen == m_stamp) continue;
            seen = m_stamp;
            const double there = sign * height(*n, origin, direction);
            if (there < best - near) continue;
            best = std::max(best, there);
            m_pending.push_back(*n);
        }
    }
    return best;
}

#include "minbox/bound/SupportMap.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace {

constexpr std::ptrdiff_t kAny = std::numeric_limits<std::ptrdiff_t>::max();
constexpr std::ptrdiff_t kFew = 32;

/// The end of a climb along the hull's edges, from a vertex; at the latest where more edges meet
/// than that. Counts the edges it looks along.
int climb(const MinBoundingBoxImpl& impl, const HullLinks& links, const Vector& direction,
          int vertex, std::ptrdiff_t mostEdges, std::ptrdiff_t& count) {
    double here = hullPoint(impl, vertex) | direction;
    for (;;) {
        const int start = vertex;
        const std::ptrdiff_t edges = links.neighboursEnd(start) - links.neighboursBegin(start);
        if (edges > mostEdges) return start;
        count += edges;
        for (const int* n = links.neighboursBegin(start); n != links.neighboursEnd(start); ++n) {
            const double there = hullPoint(impl, *n) | direction;
            if (there > here) {
                here = there;
                vertex = *n;
            }
        }
        if (vertex == start) return vertex;
    }
}

}  // namespace

SupportMap::SupportMap(const MinBoundingBoxImpl& impl, const HullLinks& links)
    : m_impl(impl), m_links(links) {
    constexpr double kSmallest = 4.0;
    constexpr double kLargest = 256.0;
    const double side = std::sqrt(static_cast<double>(hullVertexCount(impl)));
    m_side = static_cast<int>(std::clamp(side, kSmallest, kLargest));
    m_half = m_side / 2.0;
    m_cells.reserve(static_cast<std::size_t>(3 * m_side * m_side));
    // A vertex at which thousands of edges meet is left as long as that costs little in all.
    const std::ptrdiff_t enough = kFew * std::ptrdiff_t{3} * m_side * m_side;
    std::ptrdiff_t count = 0;
    int lowest = 0;
    int highest = 0;
    for (int axis = 0; axis < 3; ++axis) {
        for (int row = 0; row < m_side; ++row) {
            // There and back, so that each cell lies beside the one before.
            const std::size_t first = m_cells.size();
            for (int place = 0; place < m_side; ++place) {
                const int column = row % 2 == 0 ? place : m_side - 1 - place;
                const Vector middle = middleOf(axis, row, column);
                const std::ptrdiff_t most = count < enough ? kAny : kFew;
                highest = climb(impl, links, middle, highest, most, count);
                lowest = climb(impl, links, middle * -1.0, lowest, most, count);
                m_cells.push_back(
                    {hullPoint(impl, highest) - hullPoint(impl, lowest), lowest, highest});
            }
            if (row % 2 != 0) {
                std::reverse(m_cells.begin() + static_cast<std::ptrdiff_t>(first), m_cells.end());
            }
        }
    }
}

/// Without a guess for the processor: directions come in any order.
SupportMap::Place SupportMap::placeOf(const Vector& d) const {
    const double x = std::fabs(d.x);
    const double y = std::fabs(d.y);
    const double z = std::fabs(d.z);
    // The largest coordinate says through which face, the others over it where.
    const bool isY = y > x;
    const bool isZ = z > (isY ? y : x);
    const double largest = isZ ? d.z : isY ? d.y : d.x;
    const double u = isZ ? d.x : isY ? d.z : d.y;
    const double v = isZ ? d.y : isY ? d.x : d.z;
    const double scale = m_half / largest;
    const int row = std::min(static_cast<int>(u * scale + m_half), m_side - 1);
    const int column = std::min(static_cast<int>(v * scale + m_half), m_side - 1);
    const int face = isZ ? 2 : isY ? 1 : 0;
    const int cell = (face * m_side + row) * m_side + column;
    return {static_cast<std::size_t>(cell), std::copysign(1.0, largest)};
}

void SupportMap::nearlyAcross(std::span<const Vector> directions, Vector* across) const {
    for (const Vector& direction : directions) {
        const Place place = placeOf(direction);
        *across++ = m_cells[place.cell].across * place.sign;
    }
}

Vector SupportMap::across(const Vector& direction) const {
    const Place place = placeOf(direction);
    const Cell& cell = m_cells[place.cell];
    const bool isOpposite = place.sign < 0.0;
    std::ptrdiff_t count = 0;
    const auto climbFrom = [&](int vertex, const Vector& towards) {
        return climb(m_impl, m_links, towards, vertex, kFew, count);
    };
    const int highest = climbFrom(isOpposite ? cell.lowest : cell.highest, direction);
    const int lowest = climbFrom(isOpposite ? cell.highest : cell.lowest, direction * -1.0);
    return hullPoint(m_impl, highest) - hullPoint(m_impl, lowest);
}

double SupportMap::cellAngle() const {
    return std::numbers::pi / 4.0 / m_half / 2.0;
}

Vector SupportMap::middleOf(int axis, int row, int column) const {
    const double u = (row + 0.5) / m_half - 1.0;
    const double v = (column + 0.5) / m_half - 1.0;
    if (axis == 0) return {1.0, u, v};
    if (axis == 1) return {v, 1.0, u};
    return {u, v, 1.0};
}

#include "minbox/bound/SupportMap.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace Tesk::minbox {
namespace {

/// A cheap climb ends at a vertex with more neighbours than this.
constexpr std::size_t kCheapNeighbours = 32;

}  // namespace

SupportMap::SupportMap(const SearchHull& hull) : m_points(hull.points()), m_links(hull.links()) {
    constexpr double kMinSide = 4.0;
    constexpr double kMaxSide = 256.0;
    TESK_ASSERT(hull.hasFaces());
    const double side = std::sqrt(static_cast<double>(m_points.count()));
    m_side = static_cast<int>(std::clamp(side, kMinSide, kMaxSide));
    m_half = m_side / 2.0;
    m_cells.reserve(static_cast<std::size_t>(3 * m_side * m_side));
    // Climbs pass over vertices with thousands of edges as long as that is cheap in total.
    const std::size_t cheapVisits = kCheapNeighbours * m_cells.capacity();
    std::size_t visits = 0;
    int lowest = 0;
    int highest = 0;
    for (int axis = 0; axis < 3; ++axis) {
        for (int row = 0; row < m_side; ++row) {
            // Every second row runs backwards, so that each cell is adjacent to the one before.
            const std::size_t first = m_cells.size();
            for (int place = 0; place < m_side; ++place) {
                const int column = row % 2 == 0 ? place : m_side - 1 - place;
                const Vector middle = middleOf(axis, row, column);
                const auto height = [&](int vertex) { return m_points[vertex] | middle; };
                const auto depth = [&](int vertex) { return m_points[vertex] | (middle * -1.0); };
                const std::size_t most = visits < cheapVisits
                                             ? std::numeric_limits<std::size_t>::max()
                                             : kCheapNeighbours;
                highest = m_links.climb(highest, height, most, visits);
                lowest = m_links.climb(lowest, depth, most, visits);
                m_cells.push_back({m_points[highest] - m_points[lowest], lowest, highest});
            }
            if (row % 2 != 0) {
                std::reverse(m_cells.begin() + static_cast<std::ptrdiff_t>(first), m_cells.end());
            }
        }
    }
}

/// Without branches, which would be mispredicted: directions come in any order.
SupportMap::Place SupportMap::placeOf(const Vector& d) const {
    const double x = std::fabs(d.x);
    const double y = std::fabs(d.y);
    const double z = std::fabs(d.z);
    // The largest coordinate selects the face of the cube; the others give the position on it.
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

void SupportMap::nearlyAcross(std::span<const Vector> directions, std::span<Vector> across) const {
    TESK_ASSERT(across.size() == directions.size());
    for (std::size_t i = 0; i < directions.size(); ++i) {
        const Place place = placeOf(directions[i]);
        across[i] = m_cells[place.cell].across * place.sign;
    }
}

Vector SupportMap::across(const Vector& direction) const {
    const Place place = placeOf(direction);
    const Cell& cell = m_cells[place.cell];
    const bool isOpposite = place.sign < 0.0;
    const Vector down = direction * -1.0;
    std::size_t visits = 0;
    const int highest = m_links.climb(
        isOpposite ? cell.lowest : cell.highest, [&](int v) { return m_points[v] | direction; },
        kCheapNeighbours, visits);
    const int lowest = m_links.climb(
        isOpposite ? cell.highest : cell.lowest, [&](int v) { return m_points[v] | down; },
        kCheapNeighbours, visits);
    return m_points[highest] - m_points[lowest];
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

}  // namespace Tesk::minbox

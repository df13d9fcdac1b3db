#pragma once

#include <cmath>
#include <vector>

#include "BoxCandidate.h"
#include "HullLinks.h"
#include "MinBoundingBoxImpl.h"

/// The two hull vertices that are farthest apart along a direction, for any direction: nearly so
/// from a table, or by climbing from there.
///
/// Whatever two vertices are given, their distance along a direction is a bound below the hull's
/// width along it.
class SupportMap {
 public:
    /// Looks for the farthest vertices along the middle of each cell of the table; it has about
    /// three cells per vertex. Keeps references to both.
    SupportMap(const MinBoundingBoxImpl& impl, const HullLinks& links);

    /// From the lowest to the highest vertex along a direction, or nearly so: those along the
    /// middle of the direction's cell.
    Vector nearlyAcross(const Vector& direction) const;

    /// From the lowest to the highest vertex along a direction, but for plateaus and vertices at
    /// which very many edges meet, where a climb may end early.
    Vector across(const Vector& direction) const;

    /// The angle that a cell covers, at least.
    double cellAngle() const;

 private:
    /// Along the middle, from the one vertex to the other.
    struct Cell {
        Vector across;
        int lowest;
        int highest;
    };

    const Cell& cellOf(const Vector& direction, bool& isOpposite) const;
    Vector middleOf(int axis, int row, int column) const;

    const MinBoundingBoxImpl& m_impl;
    const HullLinks& m_links;
    // The cells are squares on three faces of a cube about the origin; the others are opposite.
    int m_side = 0;  ///< of a face, in cells
    double m_half = 0.0;
    std::vector<Cell> m_cells;
};

inline const SupportMap::Cell& SupportMap::cellOf(const Vector& d, bool& isOpposite) const {
    const double x = std::fabs(d.x);
    const double y = std::fabs(d.y);
    const double z = std::fabs(d.z);
    // The largest coordinate says through which face, the others over it where.
    std::size_t axis = 0;
    double largest = d.x;
    double u = d.y;
    double v = d.z;
    if (y > x) {
        axis = 1;
        largest = d.y;
        u = d.z;
        v = d.x;
    }
    if (z > x && z > y) {
        axis = 2;
        largest = d.z;
        u = d.x;
        v = d.y;
    }
    isOpposite = largest < 0.0;
    const double scale = m_half / largest;
    const auto place = [&](double coordinate) {
        const int cell = static_cast<int>(coordinate * scale + m_half);
        return static_cast<std::size_t>(cell < 0 ? 0 : cell < m_side ? cell : m_side - 1);
    };
    const auto side = static_cast<std::size_t>(m_side);
    return m_cells[(axis * side + place(u)) * side + place(v)];
}

inline Vector SupportMap::nearlyAcross(const Vector& direction) const {
    bool isOpposite = false;
    const Vector& v = cellOf(direction, isOpposite).across;
    return isOpposite ? Vector(-v.x, -v.y, -v.z) : v;
}

#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "minbox/box/Vector.h"

namespace Tesk::minbox {

/// Unit vectors up to sign, sorted into cells on the faces of a cube, to find those orthogonal to a
/// given one without testing all: they lie on a great circle, which crosses each face in a straight
/// line.
class DirectionIndex {
 public:
    explicit DirectionIndex(const std::vector<Vector>& directions);

    /// Directions count as orthogonal if their dot product is at most this far from zero.
    static constexpr double kTolerance = 1e-9;

    /// Calls visit(index) for each direction orthogonal to a unit vector, in no fixed order.
    template <class Visit>
    void forEachOrthogonal(const Vector& direction, Visit visit) const {
        for (int face = 0; face < 3; ++face) {
            forEachCell(face, direction, [&](std::size_t cell) {
                for (std::size_t i = m_first[cell]; i < m_first[cell + 1]; ++i) {
                    if (std::fabs(m_directions[i] | direction) <= kTolerance) visit(m_members[i]);
                }
            });
        }
    }

 private:
    std::size_t cellOf(const Vector& direction) const;

    /// The distance from −1 to a face coordinate in −1 .. 1, in cells.
    double inCells(double coordinate) const { return (coordinate + 1.0) * 0.5 * m_size; }

    /// Visits the cells of a face that the great circle crosses. On the face where component `face`
    /// is 1, it is the line d0 + d1 u + d2 v = 0.
    template <class Visit>
    void forEachCell(int face, const Vector& direction, Visit visit) const {
        constexpr double kSlack = 1e-6;
        const double d0 = direction[face];
        const double d1 = direction[(face + 1) % 3];
        const double d2 = direction[(face + 2) % 3];
        if (std::fabs(d0) > std::fabs(d1) + std::fabs(d2) + kSlack) return;
        // Along the coordinate in which the line is flatter.
        const bool isAlongU = std::fabs(d2) >= std::fabs(d1);
        const double rise = isAlongU ? d1 / d2 : d2 / d1;
        const double offset = isAlongU ? d0 / d2 : d0 / d1;
        for (int column = 0; column < m_size; ++column) {
            const double begin = 2.0 * column / m_size - 1.0;
            const double end = 2.0 * (column + 1) / m_size - 1.0;
            const double v0 = -offset - rise * begin;
            const double v1 = -offset - rise * end;
            const double low = std::min(v0, v1) - kSlack;
            const double high = std::max(v0, v1) + kSlack;
            if (!(high >= -1.0 && low <= 1.0)) continue;
            const int firstRow = static_cast<int>(inCells(std::max(low, -1.0)));
            const int lastRow = static_cast<int>(inCells(std::min(high, 1.0)));
            for (int row = firstRow; row <= lastRow && row < m_size; ++row) {
                visit(isAlongU ? cell(face, column, row) : cell(face, row, column));
            }
        }
    }

    std::size_t cell(int face, int column, int row) const {
        return (static_cast<std::size_t>(face) * static_cast<std::size_t>(m_size) +
                static_cast<std::size_t>(row)) *
                   static_cast<std::size_t>(m_size) +
               static_cast<std::size_t>(column);
    }

    int m_size = 1;                    ///< cells along a face's side
    std::vector<std::size_t> m_first;  ///< by cell, into the members
    std::vector<int> m_members;        ///< cell by cell
    std::vector<Vector> m_directions;  ///< of the members
};

}  // namespace Tesk::minbox

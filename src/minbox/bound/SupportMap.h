#pragma once

#include <span>
#include <vector>

#include "minbox/hull/SearchHull.h"

namespace Tesk::minbox {

/// Finds two hull vertices that are far apart along any direction: quickly from a table, or the
/// farthest by climbing from there.
///
/// The distance of any two vertices along a direction is a lower bound of the hull's width along
/// it, so a pair that is not the farthest makes a bound weaker but never wrong.
class SupportMap {
 public:
    /// Finds the farthest vertices along the middle of each cell of the table, which has about
    /// three cells per vertex of a hull of usual size. Keeps a reference to the hull, which has
    /// faces.
    explicit SupportMap(const SearchHull& hull);

    /// For each direction, the vector from the lowest to the highest vertex along the middle of the
    /// direction's cell.
    ///
    /// @param across  as many vectors as directions
    void nearlyAcross(std::span<const Vector> directions, std::span<Vector> across) const;

    /// The vector from the lowest to the highest vertex along a direction. Plateaus, and vertices
    /// at which very many edges meet, may end a climb early.
    Vector across(const Vector& direction) const;

    /// A lower bound of the angle that a cell covers, in radians.
    double cellAngle() const;

 private:
    /// The farthest vertices along the middle.
    struct Cell {
        Vector across;
        int lowest;
        int highest;
    };

    /// A cell, and −1 for a direction opposite to those of the cell, else 1.
    struct Place {
        std::size_t cell;
        double sign;
    };

    Place placeOf(const Vector& direction) const;
    Vector middleOf(int axis, int row, int column) const;

    const HullPoints& m_points;
    const HullLinks& m_links;
    // The cells are squares on three faces of a cube about the origin, one of each opposite pair.
    int m_side = 0;  ///< cells along a side of a face
    double m_half = 0.0;
    std::vector<Cell> m_cells;
};

}  // namespace Tesk::minbox

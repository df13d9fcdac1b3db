#pragma once

#include <span>
#include <vector>

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/HullLinks.h"

/// The two hull vertices that are farthest apart along a direction, for any direction: nearly so
/// from a table, or by climbing from there.
///
/// Whatever two vertices are given, their distance along a direction is a bound below the hull's
/// width along it.
class SupportMap {
 public:
    /// Looks for the farthest vertices along the middle of each cell of the table; of a
    /// hull of usual size it has about three cells per vertex. Keeps references to both.
    SupportMap(const MinBoundingBoxImpl& impl, const HullLinks& links);

    /// From the lowest to the highest vertex along each of some directions, or nearly so: those
    /// along the middle of the direction's cell. As many vectors as directions.
    void nearlyAcross(std::span<const Vector> directions, Vector* across) const;

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

    /// A cell, and 1 or −1 for a direction that goes through the opposite one.
    struct Place {
        std::size_t cell;
        double sign;
    };

    Place placeOf(const Vector& direction) const;
    Vector middleOf(int axis, int row, int column) const;

    const MinBoundingBoxImpl& m_impl;
    const HullLinks& m_links;
    // The cells are squares on three faces of a cube about the origin; the others are opposite.
    int m_side = 0;  ///< of a face, in cells
    double m_half = 0.0;
    std::vector<Cell> m_cells;
};

#pragma once

#include <vector>

#include "TeskCommon/Assert.h"
#include "minbox/box/BoxFrame.h"
#include "minbox/box/SearchConstants.h"

namespace Tesk::minbox {

/// The vertices of a hull in double, in the unit of the search, and their extents. There may be
/// none.
class HullPoints {
 public:
    /// @param coordinates  x, y, z of each vertex
    /// @param unitLength   the caller's length of one unit
    HullPoints(std::vector<double> coordinates, double unitLength,
               const SearchConstants& constants);

    int count() const { return static_cast<int>(m_coordinates.size() / 3); }

    Vector operator[](int vertex) const {
        TESK_ASSERT(vertex >= 0 && vertex < count());
        const double* p = m_coordinates.data() + 3 * static_cast<std::size_t>(vertex);
        return {p[0], p[1], p[2]};
    }

    const std::vector<double>& coordinates() const { return m_coordinates; }
    double unitLength() const { return m_unitLength; }
    const SearchConstants& constants() const { return m_constants; }

    /// The longest side, and the diagonal, of the box along the coordinate axes.
    double longestSide() const { return m_longestSide; }
    double diagonal() const { return m_diagonal; }

    /// An upper bound of the distance between two vertices.
    double diameterBound() const { return m_diameterBound; }

    /// The projections of all vertices on an axis; the range holds 0. Scans all vertices.
    Range rangeAlong(const Vector& origin, const Vector& axis) const;

 private:
    std::vector<double> m_coordinates;
    double m_unitLength;
    SearchConstants m_constants;
    double m_longestSide = 0.0;
    double m_diagonal = 0.0;
    double m_diameterBound = 0.0;
};

}  // namespace Tesk::minbox

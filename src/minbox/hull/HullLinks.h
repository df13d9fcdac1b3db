#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "TeskCommon/Assert.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "minbox/box/Vector.h"

namespace Tesk::minbox {

/// How the hull's triangles are joined, for walks over its surface.
///
/// The side of a triangle from corner k to corner (k + 1) mod 3 has one number: four times the
/// triangle plus k.
class HullLinks {
 public:
    /// @param normals  one per triangle
    HullLinks(const gte::ConvexHull3& hull, const std::vector<Vector>& normals);

    static int triangleOf(int side) { return side >> 2; }
    static int firstSide(int triangle) { return triangle << 2; }
    /// The next side of the same triangle.
    static int next(int side) { return (side & 3) == 2 ? side - 2 : side + 1; }

    /// The side of the neighbouring triangle on the same edge.
    int twin(int side) const { return at(side).twin; }
    /// The edge's index in the hull's edge list.
    int edge(int side) const { return at(side).edge; }
    /// The vertex at which the side starts.
    int start(int side) const { return at(side).start; }
    /// One more than the highest side number.
    std::size_t sideCount() const { return m_sides.size(); }

    int triangleCount() const { return static_cast<int>(m_normals.size()); }
    const Vector& normal(int triangle) const { return normalAt(triangle).vector; }
    double normalLength(int triangle) const { return normalAt(triangle).length; }

    /// Sets the mark of each triangle to 1 if the dot product of its normal with a direction is
    /// below zero, else to 0.
    void markAway(const Vector& direction, std::vector<std::uint8_t>& isAway) const;

    /// The vertices joined to a vertex by an edge.
    std::span<const int> neighbours(int vertex) const {
        const auto v = static_cast<std::size_t>(vertex);
        TESK_ASSERT(v + 1 < m_firstNeighbour.size());
        return {m_neighbours.data() + m_firstNeighbour[v],
                m_firstNeighbour[v + 1] - m_firstNeighbour[v]};
    }

    /// Climbs along edges from a vertex, each time to the highest neighbour, until none is higher.
    /// Stops early at a vertex with more than `maxNeighbours` neighbours.
    ///
    /// @param height  the height of a vertex
    /// @param visits  grows by the number of neighbours that were looked at
    template <class Height>
    int climb(int vertex, Height height, std::size_t maxNeighbours, std::size_t& visits) const;

 private:
    struct Side {
        int twin;
        int edge;
        int start;
    };
    struct Normal {
        Vector vector;
        double length;
    };

    const Side& at(int side) const {
        TESK_ASSERT(side >= 0 && static_cast<std::size_t>(side) < m_sides.size());
        return m_sides[static_cast<std::size_t>(side)];
    }
    const Normal& normalAt(int triangle) const {
        TESK_ASSERT(triangle >= 0 && triangle < triangleCount());
        return m_normals[static_cast<std::size_t>(triangle)];
    }

    void linkSides(const gte::ConvexHull3& hull);
    void linkVertices(const gte::ConvexHull3& hull);

    std::vector<Side> m_sides;
    std::vector<Normal> m_normals;
    std::array<std::vector<double>, 3> m_normalColumns;  ///< all x, all y and all z
    std::vector<int> m_neighbours;                       ///< vertex by vertex
    std::vector<std::size_t> m_firstNeighbour;
};

template <class Height>
int HullLinks::climb(int vertex, Height height, std::size_t maxNeighbours,
                     std::size_t& visits) const {
    double here = height(vertex);
    for (;;) {
        const std::span<const int> around = neighbours(vertex);
        if (around.size() > maxNeighbours) return vertex;
        visits += around.size();
        const int start = vertex;
        for (const int neighbour : around) {
            const double there = height(neighbour);
            if (there > here) {
                here = there;
                vertex = neighbour;
            }
        }
        if (vertex == start) return vertex;
    }
}

}  // namespace Tesk::minbox

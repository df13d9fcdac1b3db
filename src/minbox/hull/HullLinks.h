#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"

/// How the hull's triangles hang together, for walks over its surface.
///
/// A triangle's side from corner k to corner (k + 1) mod 3 is named by one number, four times the
/// triangle plus k.
class HullLinks {
 public:
    /// @param normals  one per triangle
    HullLinks(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals);

    static int triangleOf(int side) { return side >> 2; }
    static int firstSide(int triangle) { return triangle << 2; }
    /// The next side of the same triangle.
    static int next(int side) { return (side & 3) == 2 ? side - 2 : side + 1; }

    /// The same edge's side in the triangle across.
    int twin(int side) const { return m_sides[static_cast<std::size_t>(side)].twin; }
    /// The edge's place in the edge list.
    int edge(int side) const { return m_sides[static_cast<std::size_t>(side)].edge; }
    /// The vertex at which the side starts.
    int start(int side) const { return m_sides[static_cast<std::size_t>(side)].start; }
    /// How many numbers there are for sides.
    std::size_t sideCount() const { return m_sides.size(); }

    /// Of the triangle's normal with a direction.
    double dot(int triangle, const Vector& direction) const {
        return m_normals[static_cast<std::size_t>(triangle)].normal | direction;
    }
    double normalLength(int triangle) const {
        return m_normals[static_cast<std::size_t>(triangle)].length;
    }

    /// Per triangle, 1 where the dot product is below zero and 0 elsewhere.
    void markAway(const Vector& direction, std::vector<std::uint8_t>& isAway) const;

    /// The vertices joined to a vertex by an edge.
    const int* neighboursBegin(int vertex) const {
        return m_neighbours.data() + m_firstNeighbour[static_cast<std::size_t>(vertex)];
    }
    const int* neighboursEnd(int vertex) const { return neighboursBegin(vertex + 1); }

 private:
    struct Side {
        int twin;
        int edge;
        int start;
    };
    struct Normal {
        Vector normal;
        double length;
    };

    void linkSides(const MinBoundingBoxImpl& impl);
    void linkVertices(const MinBoundingBoxImpl& impl);

    std::vector<Side> m_sides;
    std::vector<Normal> m_normals;
    std::array<std::vector<double>, 3> m_normalColumns;  ///< x, y and z, for all at once
    std::vector<int> m_neighbours;                       ///< vertex by vertex
    std::vector<std::size_t> m_firstNeighbour;
};

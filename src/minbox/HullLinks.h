#pragma once

#include <array>
#include <vector>

#include "BoxCandidate.h"
#include "MinBoundingBoxImpl.h"

/// How the hull's triangles hang together, for walks over its surface.
class HullLinks {
 public:
    /// A triangle's side from corner k to corner (k + 1) mod 3.
    struct Side {
        int neighbour;  ///< the triangle across
        int edge;       ///< its place in the edge list
    };

    /// @param normals  one per triangle
    HullLinks(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals);

    const std::array<int, 3>& corners(int triangle) const {
        return m_triangles[static_cast<std::size_t>(triangle)];
    }
    const std::array<Side, 3>& sides(int triangle) const {
        return m_sides[static_cast<std::size_t>(triangle)];
    }

    /// Of a triangle's normal.
    double normalLength(int triangle) const {
        return m_lengths[static_cast<std::size_t>(triangle)];
    }

    /// The place of the side that is an edge.
    std::size_t placeOf(int triangle, int edge) const {
        const std::array<Side, 3>& all = sides(triangle);
        return all[0].edge == edge ? 0 : all[1].edge == edge ? 1 : 2;
    }

    /// The vertices joined to a vertex by an edge.
    const int* neighboursBegin(int vertex) const {
        return m_neighbours.data() + m_firstNeighbour[static_cast<std::size_t>(vertex)];
    }
    const int* neighboursEnd(int vertex) const { return neighboursBegin(vertex + 1); }

 private:
    void linkVertices(const MinBoundingBoxImpl& impl);

    const std::vector<std::array<int, 3>>& m_triangles;
    std::vector<std::array<Side, 3>> m_sides;
    std::vector<double> m_lengths;
    std::vector<int> m_neighbours;  ///< vertex by vertex
    std::vector<std::size_t> m_firstNeighbour;
};

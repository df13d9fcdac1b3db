#include "HullLinks.h"

#include <numeric>

HullLinks::HullLinks(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals)
    : m_triangles(*impl.hullTriangles), m_sides(m_triangles.size()) {
    m_lengths.reserve(normals.size());
    for (const Vector& normal : normals) m_lengths.push_back(normal.GetLength());
    // An edge runs from a to b in its triangle f0, back in f1.
    const auto link = [&](int triangle, int from, int across, int edge) {
        const std::array<int, 3>& corner = corners(triangle);
        const std::size_t k = corner[0] == from ? 0 : corner[1] == from ? 1 : 2;
        m_sides[static_cast<std::size_t>(triangle)][k] = {across, edge};
    };
    for (std::size_t e = 0; e < impl.hullEdges->size(); ++e) {
        const gte::HullEdge& edge = (*impl.hullEdges)[e];
        link(edge.f0, edge.a, edge.f1, static_cast<int>(e));
        link(edge.f1, edge.b, edge.f0, static_cast<int>(e));
    }
    linkVertices(impl);
}

void HullLinks::linkVertices(const MinBoundingBoxImpl& impl) {
    const auto count = static_cast<std::size_t>(hullVertexCount(impl));
    // Counted two places up, so that after the filling first[v] is where group v begins.
    m_firstNeighbour.assign(count + 2, 0);
    for (const gte::HullEdge& edge : *impl.hullEdges) {
        ++m_firstNeighbour[static_cast<std::size_t>(edge.a) + 2];
        ++m_firstNeighbour[static_cast<std::size_t>(edge.b) + 2];
    }
    std::partial_sum(m_firstNeighbour.begin(), m_firstNeighbour.end(), m_firstNeighbour.begin());
    m_neighbours.resize(impl.hullEdges->size() * 2);
    for (const gte::HullEdge& edge : *impl.hullEdges) {
        m_neighbours[m_firstNeighbour[static_cast<std::size_t>(edge.a) + 1]++] = edge.b;
        m_neighbours[m_firstNeighbour[static_cast<std::size_t>(edge.b) + 1]++] = edge.a;
    }
}

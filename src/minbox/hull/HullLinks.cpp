#include "minbox/hull/HullLinks.h"

#include <algorithm>
#include <numeric>

HullLinks::HullLinks(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals) {
    m_normals.reserve(normals.size());
    for (const Vector& normal : normals) m_normals.push_back({normal, normal.GetLength()});
    for (int axis = 0; axis < 3; ++axis) {
        std::vector<double>& column = m_normalColumns[static_cast<std::size_t>(axis)];
        column.reserve(normals.size());
        for (const Vector& normal : normals) column.push_back(normal[axis]);
    }
    linkSides(impl);
    linkVertices(impl);
}

void HullLinks::markAway(const Vector& direction, std::vector<std::uint8_t>& isAway) const {
    // In two steps over pieces, so that a compiler does several triangles at once.
    constexpr std::size_t kPiece = 256;
    std::array<double, kPiece> dots;
    const std::size_t count = m_normals.size();
    for (std::size_t begin = 0; begin < count; begin += kPiece) {
        const std::size_t size = std::min(kPiece, count - begin);
        const double* x = m_normalColumns[0].data() + begin;
        const double* y = m_normalColumns[1].data() + begin;
        const double* z = m_normalColumns[2].data() + begin;
        for (std::size_t i = 0; i < size; ++i) {
            dots[i] = x[i] * direction.x + y[i] * direction.y + z[i] * direction.z;
        }
        std::uint8_t* marks = isAway.data() + begin;
        for (std::size_t i = 0; i < size; ++i) marks[i] = dots[i] < 0.0 ? 1 : 0;
    }
}

void HullLinks::linkSides(const MinBoundingBoxImpl& impl) {
    const std::vector<std::array<int, 3>>& triangles = *impl.hullTriangles;
    m_sides.resize(triangles.size() * 4);
    const auto sideFrom = [&](int vertex, int triangle) {
        const std::array<int, 3>& corner = triangles[static_cast<std::size_t>(triangle)];
        return firstSide(triangle) + (corner[0] == vertex ? 0 : corner[1] == vertex ? 1 : 2);
    };
    // An edge runs from a to b in its triangle f0, back in f1.
    for (std::size_t e = 0; e < impl.hullEdges->size(); ++e) {
        const gte::HullEdge& edge = (*impl.hullEdges)[e];
        const int forth = sideFrom(edge.a, edge.f0);
        const int back = sideFrom(edge.b, edge.f1);
        m_sides[static_cast<std::size_t>(forth)] = {back, static_cast<int>(e), edge.a};
        m_sides[static_cast<std::size_t>(back)] = {forth, static_cast<int>(e), edge.b};
    }
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

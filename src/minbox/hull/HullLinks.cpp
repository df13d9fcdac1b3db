#include "minbox/hull/HullLinks.h"

#include <algorithm>

namespace Tesk::minbox {

HullLinks::HullLinks(const gte::ConvexHull3& hull, const std::vector<Vector>& normals) {
    TESK_ASSERT(normals.size() == hull.getTriangles().size());
    m_normals.reserve(normals.size());
    for (const Vector& normal : normals) m_normals.push_back({normal, normal.GetLength()});
    for (int axis = 0; axis < 3; ++axis) {
        std::vector<double>& column = m_normalColumns[static_cast<std::size_t>(axis)];
        column.reserve(normals.size());
        for (const Vector& normal : normals) column.push_back(normal[axis]);
    }
    linkSides(hull);
    m_neighbours = {hull.getVertices().size(), [&](auto visit) {
                        for (const gte::HullEdge& edge : hull.getHullEdges()) {
                            visit(static_cast<std::size_t>(edge.a), edge.b);
                            visit(static_cast<std::size_t>(edge.b), edge.a);
                        }
                    }};
}

void HullLinks::markAway(const Vector& direction, std::vector<std::uint8_t>& isAway) const {
    TESK_ASSERT(isAway.size() == m_normals.size());
    // Two loops over each piece, which compilers vectorise.
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

void HullLinks::linkSides(const gte::ConvexHull3& hull) {
    const std::vector<std::array<int, 3>>& triangles = hull.getTriangles();
    m_sides.resize(triangles.size() * 4);
    const auto sideFrom = [&](int vertex, int triangle) {
        const std::array<int, 3>& corner = triangles[static_cast<std::size_t>(triangle)];
        return firstSide(triangle) + (corner[0] == vertex ? 0 : corner[1] == vertex ? 1 : 2);
    };
    // An edge runs from a to b in its triangle f0, back in f1.
    const std::vector<gte::HullEdge>& edges = hull.getHullEdges();
    for (std::size_t e = 0; e < edges.size(); ++e) {
        const gte::HullEdge& edge = edges[e];
        const int forth = sideFrom(edge.a, edge.f0);
        const int back = sideFrom(edge.b, edge.f1);
        m_sides[static_cast<std::size_t>(forth)] = {back, static_cast<int>(e), edge.a};
        m_sides[static_cast<std::size_t>(back)] = {forth, static_cast<int>(e), edge.b};
    }
}

}  // namespace Tesk::minbox

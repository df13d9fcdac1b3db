#include "Silhouette.h"

namespace {

constexpr int kNone = -1;

/// The place of a vertex in a triangle; kNone where it is not a corner.
int placeOf(int vertex, const std::array<int, 3>& triangle) {
    for (int k = 0; k < 3; ++k) {
        if (triangle[static_cast<std::size_t>(k)] == vertex) return k;
    }
    return kNone;
}

}  // namespace

Silhouette::Silhouette(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals)
    : m_impl(impl),
      m_normals(normals),
      m_dots(normals.size()),
      m_next(static_cast<std::size_t>(hullVertexCount(impl)), 0) {
    m_outline.reserve(m_next.size());
}

Outline& Silhouette::along(const Vector& direction) {
    m_outline.clear();
    findDots(direction);
    const int start = linkEdges();
    if (start != kNone) walk(start);
    removeCollinear(m_impl, direction, m_outline);
    return m_outline;
}

void Silhouette::findDots(const Vector& direction) {
    for (std::size_t j = 0; j < m_dots.size(); ++j) m_dots[j] = m_normals[j] | direction;
}

/// Links the outline's vertices in the order of the triangles that face away. Returns where the
/// last link was made, or kNone.
int Silhouette::linkEdges() {
    int start = kNone;
    for (const gte::HullEdge& edge : *m_impl.hullEdges) {
        const bool isAway0 = m_dots[static_cast<std::size_t>(edge.f0)] < m_impl.zero;
        const bool isAway1 = m_dots[static_cast<std::size_t>(edge.f1)] < m_impl.zero;
        if (isAway0 == isAway1) continue;
        const auto& away =
            (*m_impl.hullTriangles)[static_cast<std::size_t>(isAway0 ? edge.f0 : edge.f1)];
        const int k = placeOf(edge.a, away);
        if (k == kNone) continue;
        if (away[static_cast<std::size_t>((k + 2) % 3)] == edge.b) {
            m_next[static_cast<std::size_t>(edge.b)] = edge.a;
        } else {
            m_next[static_cast<std::size_t>(edge.a)] = edge.b;
        }
        start = edge.a;
    }
    return start;
}

void Silhouette::walk(int start) {
    int vertex = start;
    do {
        m_outline.push_back(vertex);
        vertex = m_next[static_cast<std::size_t>(vertex)];
    } while (vertex != start && m_outline.size() < m_next.size());
}

#include "Silhouette.h"

#include <cmath>

namespace {

constexpr int kNone = -1;

/// Of the product of the normals' lengths: a dot product farther from zero than this has the right
/// sign, with room to spare (three products and two sums round by less than 4e-16).
constexpr double kClear = 2e-15;

/// The place of a vertex in a triangle; kNone where it is not a corner.
int placeOf(int vertex, const std::array<int, 3>& triangle) {
    for (int k = 0; k < 3; ++k) {
        if (triangle[static_cast<std::size_t>(k)] == vertex) return k;
    }
    return kNone;
}

}  // namespace

Silhouette::Silhouette(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals,
                       const HullLinks& links)
    : m_impl(impl),
      m_normals(normals),
      m_links(links),
      m_dots(normals.size()),
      m_next(static_cast<std::size_t>(hullVertexCount(impl)), 0) {
    m_outline.reserve(m_next.size());
    m_walked.reserve(m_next.size());
}

const Outline& Silhouette::along(int face) {
    m_direction = m_normals[static_cast<std::size_t>(face)];
    m_directionLength = m_links.normalLength(face);
    const bool isWalked = walkAround();
    if (!isWalked) {
        scanEdges();
        m_walked = m_outline;
    }
    removeCollinear(m_impl, m_direction, m_outline);
    if (!isWalked && m_outline.size() < 3) {
        // An edge along the direction is in line with both its neighbours, and takes its two
        // corners away.
        m_outline = m_walked;
        removeSteep(m_impl, m_direction, m_outline);
        removeCollinear(m_impl, m_direction, m_outline);
    }
    return m_outline;
}

bool Silhouette::isClear(int triangle, double dotOfTriangle) const {
    return std::fabs(dotOfTriangle) > kClear * m_links.normalLength(triangle) * m_directionLength;
}

/// Fills the outline; false where rounding makes it doubtful.
bool Silhouette::walkAround() {
    const std::optional<Crossing> first = findCrossing();
    if (!first) return false;
    m_walked.clear();
    int lastEdge = kNone;
    std::size_t placeOfLast = 0;
    std::optional<Crossing> crossing = first;
    do {
        const HullLinks::Side& side = m_links.sides(crossing->away)[crossing->side];
        const bool isClearHere = isClear(crossing->away, dot(crossing->away)) &&
                                 isClear(side.neighbour, dot(side.neighbour));
        if (!isClearHere || m_walked.size() == m_next.size()) return false;
        if (side.edge > lastEdge) {
            lastEdge = side.edge;
            placeOfLast = m_walked.size();
        }
        m_walked.push_back(m_links.corners(crossing->away)[crossing->side]);
        crossing = following(*crossing);
        if (!crossing) return false;
    } while (*crossing != *first);
    m_last = *first;
    // The scan's last link is that of the highest edge; it starts at the edge's a, which is where
    // the walk enters the edge or where it leaves it.
    const int start = (*m_impl.hullEdges)[static_cast<std::size_t>(lastEdge)].a;
    if (m_walked[placeOfLast] != start) placeOfLast = (placeOfLast + 1) % m_walked.size();
    m_outline.assign(m_walked.begin() + static_cast<std::ptrdiff_t>(placeOfLast), m_walked.end());
    m_outline.insert(m_outline.end(), m_walked.begin(),
                     m_walked.begin() + static_cast<std::ptrdiff_t>(placeOfLast));
    return true;
}

/// Goes from the last outline's crossing downhill, or uphill, to where the sign changes.
std::optional<Silhouette::Crossing> Silhouette::findCrossing() const {
    int triangle = m_last.away;
    double here = dot(triangle);
    const bool isAway = here < m_impl.zero;
    const auto slope = [&](int t, double d) {
        const double cosine = d / m_links.normalLength(t);
        return isAway ? cosine : -cosine;
    };
    // Each step goes on to the steepest neighbour; a flat or rounded place ends the search.
    for (std::size_t steps = 0; steps < m_normals.size(); ++steps) {
        int best = kNone;
        double bestSlope = slope(triangle, here);
        double bestDot = here;
        for (std::size_t k = 0; k < 3; ++k) {
            const auto [across, edge] = m_links.sides(triangle)[k];
            const double there = dot(across);
            if ((there < m_impl.zero) != isAway) {
                if (isAway) return Crossing{triangle, k};
                return Crossing{across, m_links.placeOf(across, edge)};
            }
            if (slope(across, there) > bestSlope) {
                best = across;
                bestSlope = slope(across, there);
                bestDot = there;
            }
        }
        if (best == kNone) return std::nullopt;
        triangle = best;
        here = bestDot;
    }
    return std::nullopt;
}

/// The crossing that starts where this one ends: turns about that vertex over triangles that face
/// away.
std::optional<Silhouette::Crossing> Silhouette::following(Crossing crossing) const {
    int triangle = crossing.away;
    std::size_t side = (crossing.side + 1) % 3;
    for (std::size_t turns = 0; turns < m_normals.size(); ++turns) {
        const auto [across, edge] = m_links.sides(triangle)[side];
        if (!(dot(across) < m_impl.zero)) return Crossing{triangle, side};
        side = (m_links.placeOf(across, edge) + 1) % 3;
        triangle = across;
    }
    return std::nullopt;
}

void Silhouette::scanEdges() {
    m_outline.clear();
    for (std::size_t j = 0; j < m_dots.size(); ++j) m_dots[j] = m_normals[j] | m_direction;
    const int start = linkEdges();
    if (start == kNone) return;
    // Where rounding has broken the outline, the walk may never come back.
    const auto limit = static_cast<std::size_t>(m_impl.pointCount);
    int vertex = start;
    do {
        m_outline.push_back(vertex);
        vertex = m_next[static_cast<std::size_t>(vertex)];
    } while (vertex != start && m_outline.size() < limit);
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

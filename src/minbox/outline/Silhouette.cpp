#include "minbox/outline/Silhouette.h"

namespace Tesk::minbox {
namespace {

constexpr int kNone = -1;

/// A dot product of two normals has the right sign if it is at least this, relative to the product
/// of their lengths: three products and two sums round by less than 4e-16.
constexpr double kClear = 2e-15;

}  // namespace

Silhouette::Silhouette(const SearchHull& hull, const HullLinks& links, int maxVertices)
    : m_points(hull.points()),
      m_edges(hull.hull().getHullEdges()),
      m_links(links),
      m_maxVertices(static_cast<std::size_t>(maxVertices)),
      m_placeBefore(links.sideCount(), 0),
      m_isAway(static_cast<std::size_t>(links.triangleCount())) {
    TESK_ASSERT(hull.hasFaces() && maxVertices >= hull.points().count());
    m_outline.reserve(static_cast<std::size_t>(m_points.count()));
}

const Outline& Silhouette::along(int face) {
    m_direction = m_links.normal(face);
    m_directionLength = m_links.normalLength(face);
    const bool isWalked = walkAround();
    if (!isWalked) {
        scanEdges();
        m_scanned = m_outline;
    }
    removeCollinear(m_points, m_direction, m_outline);
    if (!isWalked && m_outline.size() < 3) {
        // An edge along the direction is in line with both its neighbours, so that both its
        // vertices were dropped.
        m_outline = m_scanned;
        removeSteep(m_points, m_direction, m_outline);
        removeCollinear(m_points, m_direction, m_outline);
    }
    return m_outline;
}

/// Whether a side is a crossing beyond the doubt of rounding.
bool Silhouette::isClearCrossing(int side) const {
    const int away = HullLinks::triangleOf(side);
    const int across = HullLinks::triangleOf(m_links.twin(side));
    const double least = kClear * m_directionLength;
    return dot(away) < -least * m_links.normalLength(away) &&
           dot(across) > least * m_links.normalLength(across);
}

/// The crossing that followed this one on the last outline walked; kNone if this one was not on it.
int Silhouette::followingBefore(int crossing) const {
    const auto place = static_cast<std::size_t>(m_placeBefore[static_cast<std::size_t>(crossing)]);
    if (place >= m_before.size() || m_before[place] != crossing) return kNone;
    return m_before[place + 1 == m_before.size() ? 0 : place + 1];
}

/// Finds the outline by a walk; false if rounding makes it doubtful.
bool Silhouette::walkAround() {
    const int first = findCrossing();
    if (first == kNone || !isClearCrossing(first)) return false;
    m_walk.clear();
    const auto most = static_cast<std::size_t>(m_points.count());
    int crossing = first;
    do {
        if (m_walk.size() == most) return false;
        m_walk.push_back(crossing);
        // Faces of similar direction share most of their outlines.
        const int before = followingBefore(crossing);
        if (before != kNone && isClearCrossing(before)) {
            crossing = before;
        } else {
            crossing = following(crossing);
            if (crossing == kNone || !isClearCrossing(crossing)) return false;
        }
    } while (crossing != first);
    takeWalk();
    return true;
}

/// Turns the walk into the outline, and keeps it for the next one.
void Silhouette::takeWalk() {
    const std::size_t size = m_walk.size();
    std::size_t last = 0;  // index of the scan's last link, that of the highest-numbered edge
    for (std::size_t i = 0; i < size; ++i) {
        m_placeBefore[static_cast<std::size_t>(m_walk[i])] = static_cast<int>(i);
        if (m_links.edge(m_walk[i]) > m_links.edge(m_walk[last])) last = i;
    }
    // The scan starts at the edge's a, which is where the walk enters the edge or where it leaves.
    const int a = m_edges[static_cast<std::size_t>(m_links.edge(m_walk[last]))].a;
    if (m_links.start(m_walk[last]) != a) last = (last + 1) % size;
    m_outline.clear();
    for (std::size_t i = last; i < size; ++i) m_outline.push_back(m_links.start(m_walk[i]));
    for (std::size_t i = 0; i < last; ++i) m_outline.push_back(m_links.start(m_walk[i]));
    m_before.swap(m_walk);
}

/// Finds any crossing. Starts at one of the last outline and moves from triangle to triangle
/// towards the other sign. kNone if it gets stuck.
int Silhouette::findCrossing() const {
    int triangle = m_before.empty() ? 0 : HullLinks::triangleOf(m_before.front());
    double here = dot(triangle);
    const bool isAway = here < m_points.constants().zero;
    const auto slope = [&](int t, double d) {
        const double cosine = d / m_links.normalLength(t);
        return isAway ? cosine : -cosine;
    };
    // Each step goes to the steepest neighbour; it gets stuck on a plateau.
    for (std::size_t steps = 0; steps < static_cast<std::size_t>(m_links.triangleCount());
         ++steps) {
        int best = kNone;
        double bestSlope = slope(triangle, here);
        double bestDot = here;
        for (int k = 0; k < 3; ++k) {
            const int side = HullLinks::firstSide(triangle) + k;
            const int twin = m_links.twin(side);
            const int across = HullLinks::triangleOf(twin);
            const double there = dot(across);
            if ((there < m_points.constants().zero) != isAway) return isAway ? side : twin;
            if (slope(across, there) > bestSlope) {
                best = across;
                bestSlope = slope(across, there);
                bestDot = there;
            }
        }
        if (best == kNone) return kNone;
        triangle = best;
        here = bestDot;
    }
    return kNone;
}

/// The crossing that starts where this one ends, found by turning about that vertex over triangles
/// that face away. kNone if there is none.
int Silhouette::following(int crossing) const {
    int side = HullLinks::next(crossing);
    for (std::size_t turns = 0; turns < static_cast<std::size_t>(m_links.triangleCount());
         ++turns) {
        const int twin = m_links.twin(side);
        if (!(dot(HullLinks::triangleOf(twin)) < m_points.constants().zero)) return side;
        side = HullLinks::next(twin);
    }
    return kNone;
}

/// The outline through the highest-numbered edge on it, from that edge's a.
void Silhouette::scanEdges() {
    m_outline.clear();
    m_links.markAway(m_direction, m_isAway);
    int side = sideOfHighestEdge();
    if (side == kNone) return;
    const int start = m_links.start(side);
    // If rounding has broken the outline, the links may never lead back.
    int vertex = start;
    do {
        m_outline.push_back(vertex);
        side = HullLinks::next(highestCrossingAround(side));
        vertex = m_links.start(side);
    } while (vertex != start && m_outline.size() < m_maxVertices);
}

/// The side on the highest-numbered crossing edge that starts at the edge's a; kNone if there is no
/// crossing.
int Silhouette::sideOfHighestEdge() const {
    for (std::size_t e = m_edges.size(); e-- > 0;) {
        const gte::HullEdge& edge = m_edges[e];
        if (facesAway(edge.f0) == facesAway(edge.f1)) continue;
        int side = HullLinks::firstSide(edge.f0);
        while (m_links.start(side) != edge.a) ++side;
        return side;
    }
    return kNone;
}

/// Of the crossings that start at the same vertex as a side, that of the highest-numbered edge.
/// There are several if the outline meets itself there.
int Silhouette::highestCrossingAround(int side) const {
    int highest = side;
    int edge = kNone;
    int turned = side;
    do {
        const int twin = m_links.twin(turned);
        const bool isCrossing =
            facesAway(HullLinks::triangleOf(turned)) && !facesAway(HullLinks::triangleOf(twin));
        if (isCrossing && m_links.edge(turned) > edge) {
            highest = turned;
            edge = m_links.edge(turned);
        }
        turned = HullLinks::next(twin);
    } while (turned != side);
    return highest;
}

}  // namespace Tesk::minbox

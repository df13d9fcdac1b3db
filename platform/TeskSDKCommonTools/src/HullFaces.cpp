#include "HullFaces.h"

#include <algorithm>
#include <numeric>

#include "ExactPlane.h"
#include "MonotoneChain.h"

namespace Tesk::hull {
namespace {

using Index = std::int32_t;

template <class List>
auto& at(List& list, Index i) {
    return list[static_cast<std::size_t>(i)];
}

/// Which triangles lie in one plane.
class PlaneGroups {
 public:
    PlaneGroups(const std::vector<GridPoint>& points, const std::vector<HullFacet>& facets)
        : m_leader(facets.size()) {
        std::iota(m_leader.begin(), m_leader.end(), 0);
        for (std::size_t f = 0; f < facets.size(); ++f) {
            const auto& [a, b, c] = facets[f].corners;
            const ExactPlane plane(at(points, a), at(points, b), at(points, c));
            for (std::size_t k = 0; k < 3; ++k) {
                const Index across = facets[f].neighbours[k];
                if (across < static_cast<Index>(f)) continue;
                const Index apex = cornerOpposite(at(facets, across), static_cast<Index>(f));
                if (plane.side(at(points, apex)) == 0) join(static_cast<Index>(f), across);
            }
        }
    }

    bool hasMerged() const { return m_hasMerged; }

    Index leaderOf(Index facet) {
        while (at(m_leader, facet) != facet) {
            at(m_leader, facet) = at(m_leader, at(m_leader, facet));
            facet = at(m_leader, facet);
        }
        return facet;
    }

 private:
    /// The corner of a triangle that is not on its edge towards the neighbour.
    static Index cornerOpposite(const HullFacet& facet, Index neighbour) {
        std::size_t k = 0;
        while (facet.neighbours[k] != neighbour) ++k;
        return facet.corners[(k + 2) % 3];
    }

    void join(Index f, Index g) {
        at(m_leader, leaderOf(f)) = leaderOf(g);
        m_hasMerged = true;
    }

    std::vector<Index> m_leader;
    bool m_hasMerged = false;
};

/// Walks around the groups of triangles.
class Outliner {
 public:
    Outliner(const std::vector<HullFacet>& facets, PlaneGroups& groups)
        : m_facets(facets), m_groups(groups), m_isDone(facets.size() * 3, false) {}

    /// The outlines of all groups, corners in line with their neighbours included.
    HullFaces outlines() {
        HullFaces faces;
        for (std::size_t f = 0; f < m_facets.size(); ++f) {
            for (std::size_t k = 0; k < 3; ++k) {
                const Edge edge{static_cast<Index>(f), k};
                if (isBorder(edge) && !m_isDone[f * 3 + k]) walk(edge, faces);
            }
        }
        return faces;
    }

 private:
    struct Edge {
        Index facet;
        std::size_t k;

        bool operator==(const Edge&) const = default;
    };

    bool isBorder(const Edge& edge) {
        const Index across = at(m_facets, edge.facet).neighbours[edge.k];
        return m_groups.leaderOf(edge.facet) != m_groups.leaderOf(across);
    }

    /// The border edge that starts where this one ends. Turns about that corner inside the group.
    Edge following(Edge edge) {
        edge.k = (edge.k + 1) % 3;
        while (!isBorder(edge)) {
            const Index from = edge.facet;
            edge.facet = at(m_facets, from).neighbours[edge.k];
            const auto& neighbours = at(m_facets, edge.facet).neighbours;
            std::size_t back = 0;
            while (neighbours[back] != from) ++back;
            edge.k = (back + 1) % 3;
        }
        return edge;
    }

    void walk(const Edge& start, HullFaces& faces) {
        Edge edge = start;
        do {
            m_isDone[static_cast<std::size_t>(edge.facet) * 3 + edge.k] = true;
            faces.addCorner(at(m_facets, edge.facet).corners[edge.k]);
            edge = following(edge);
        } while (edge != start);
        faces.endFace();
    }

    const std::vector<HullFacet>& m_facets;
    PlaneGroups& m_groups;
    std::vector<bool> m_isDone;
};

/// A point is extreme where at least three faces meet: two meet along an edge.
HullFaces withExtremeCorners(const HullFaces& outlines, std::size_t pointCount) {
    std::vector<Index> facesAt(pointCount, 0);
    for (const Index corner : outlines.corners()) ++at(facesAt, corner);
    HullFaces faces;
    for (std::size_t f = 0; f < outlines.size(); ++f) {
        for (const Index corner : outlines[f]) {
            if (at(facesAt, corner) >= 3) faces.addCorner(corner);
        }
        faces.endFace();
    }
    return faces;
}

/// A point in a plane, seen along the coordinate in which the plane's normal is largest.
struct FlatPoint {
    std::int64_t u;
    std::int64_t v;
    Index index;
};

FlatPoint flatPoint(const GridPoint& p, const WideVector& normal, Index index) {
    const auto size = [](std::int64_t c) { return c < 0 ? -c : c; };
    if (size(normal.z) >= size(normal.x) && size(normal.z) >= size(normal.y)) {
        return {p.x, p.y, index};
    }
    if (size(normal.x) >= size(normal.y)) return {p.y, p.z, index};
    return {p.z, p.x, index};
}

/// Whether a, b, c turn strictly to the left.
bool turnsLeft(const FlatPoint& a, const FlatPoint& b, const FlatPoint& c) {
    return (b.u - a.u) * (c.v - a.v) - (b.v - a.v) * (c.u - a.u) > 0;
}

}  // namespace

std::span<const Index> HullFaces::operator[](std::size_t face) const {
    const std::size_t first = face == 0 ? 0 : m_ends[face - 1];
    return {m_corners.data() + first, m_ends[face] - first};
}

HullFaces mergeFacets(const std::vector<GridPoint>& points, const std::vector<HullFacet>& facets) {
    PlaneGroups groups(points, facets);
    if (groups.hasMerged()) {
        return withExtremeCorners(Outliner(facets, groups).outlines(), points.size());
    }
    HullFaces faces;
    for (const HullFacet& facet : facets) {
        for (const Index corner : facet.corners) faces.addCorner(corner);
        faces.endFace();
    }
    return faces;
}

HullFaces planarFaces(const std::vector<GridPoint>& points, const Span& span) {
    const ExactPlane plane(at(points, span.points[0]), at(points, span.points[1]),
                           at(points, span.points[2]));
    std::vector<FlatPoint> flat;
    flat.reserve(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        flat.push_back(flatPoint(points[i], plane.normal(), static_cast<Index>(i)));
    }
    std::sort(flat.begin(), flat.end(), [](const FlatPoint& a, const FlatPoint& b) {
        return a.u != b.u ? a.u < b.u : a.v != b.v ? a.v < b.v : a.index < b.index;
    });
    std::vector<Index> polygon;
    appendConvexPolygon(flat, turnsLeft, polygon);
    HullFaces faces;
    for (const Index corner : polygon) faces.addCorner(corner);
    faces.endFace();
    for (auto corner = polygon.rbegin(); corner != polygon.rend(); ++corner) {
        faces.addCorner(*corner);
    }
    faces.endFace();
    return faces;
}

}  // namespace Tesk::hull

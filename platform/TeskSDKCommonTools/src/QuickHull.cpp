#include "QuickHull.h"

#include <algorithm>

#include "ExactPlane.h"
#include "TeskCommon/Assert.h"

namespace {

constexpr std::int32_t kNone = -1;

std::int64_t lengthBound(const WideVector& v) {
    return std::max({v.x < 0 ? -v.x : v.x, v.y < 0 ? -v.y : v.y, v.z < 0 ? -v.z : v.z});
}

/// The point that maximises `measure`, the first of equals.
template <class Measure>
std::int32_t farthest(const std::vector<GridPoint>& points, Measure measure) {
    std::int32_t best = 0;
    auto bestValue = measure(points[0]);
    for (std::size_t i = 1; i < points.size(); ++i) {
        const auto value = measure(points[i]);
        if (value > bestValue) {
            bestValue = value;
            best = static_cast<std::int32_t>(i);
        }
    }
    return best;
}

/// A triangle of the growing hull, with the points above it that it must still take in.
struct Facet {
    ExactPlane plane;
    std::array<std::int32_t, 3> corners{};
    std::array<std::int32_t, 3> neighbours{};
    std::int32_t firstOutside = kNone;  ///< a list, linked through Builder::m_nextOutside
    std::int32_t farthestOutside = kNone;
    double farthestHeight = 0.0;
    bool isAlive = true;
    bool isVisible = false;
};

/// An edge of the visible region: start vertex, end vertex, and the triangle that stays.
struct HorizonEdge {
    std::int32_t from;
    std::int32_t to;
    std::int32_t outerFacet;
};

class Builder {
 public:
    Builder(const std::vector<GridPoint>& points, const Span& span)
        : m_points(points), m_nextOutside(points.size(), kNone), m_coneAt(points.size(), kNone) {
        startWith(span);
        while (!m_pending.empty()) {
            const std::int32_t facet = m_pending.back();
            m_pending.pop_back();
            if (at(facet).isAlive && at(facet).firstOutside != kNone) absorbFarthestOf(facet);
        }
    }

    std::vector<HullFacet> takeSurface() const {
        std::vector<std::int32_t> place(m_facets.size(), kNone);
        std::int32_t alive = 0;
        for (std::size_t f = 0; f < m_facets.size(); ++f) {
            if (m_facets[f].isAlive) place[f] = alive++;
        }
        std::vector<HullFacet> surface;
        surface.reserve(static_cast<std::size_t>(alive));
        for (const Facet& facet : m_facets) {
            if (!facet.isAlive) continue;
            HullFacet out{facet.corners, {}};
            for (std::size_t k = 0; k < 3; ++k) {
                out.neighbours[k] = place[static_cast<std::size_t>(facet.neighbours[k])];
            }
            surface.push_back(out);
        }
        return surface;
    }

 private:
    Facet& at(std::int32_t facet) { return m_facets[static_cast<std::size_t>(facet)]; }
    const GridPoint& point(std::int32_t p) const { return m_points[static_cast<std::size_t>(p)]; }

    std::int32_t addFacet(std::int32_t a, std::int32_t b, std::int32_t c) {
        std::int32_t facet;
        if (m_free.empty()) {
            facet = static_cast<std::int32_t>(m_facets.size());
            m_facets.emplace_back();
        } else {
            facet = m_free.back();
            m_free.pop_back();
            at(facet) = Facet();
        }
        at(facet).corners = {a, b, c};
        at(facet).plane = ExactPlane(point(a), point(b), point(c));
        return facet;
    }

    void startWith(const Span& span) {
        auto [a, b, c, d] = span.points;
        if (ExactPlane(point(a), point(b), point(c)).isAbove(point(d))) std::swap(b, c);
        // d lies below a, b, c; facet k lies across edge k of it.
        const std::int32_t base = addFacet(a, b, c);
        const std::array sides = {addFacet(b, a, d), addFacet(c, b, d), addFacet(a, c, d)};
        at(base).neighbours = sides;
        for (std::size_t k = 0; k < 3; ++k) {
            at(sides[k]).neighbours = {base, sides[(k + 2) % 3], sides[(k + 1) % 3]};
        }
        m_cone = {base, sides[0], sides[1], sides[2]};
        for (std::int32_t p = 0; p < static_cast<std::int32_t>(m_points.size()); ++p) assign(p);
        m_pending = m_cone;
    }

    /// Files a point with the first triangle of the newest cone that it lies above; a point above
    /// none of them lies inside.
    void assign(std::int32_t p) {
        for (const std::int32_t f : m_cone) {
            Facet& facet = at(f);
            const double height = facet.plane.height(point(p));
            if (facet.plane.sideOf(height, point(p)) <= 0) continue;
            m_nextOutside[static_cast<std::size_t>(p)] = facet.firstOutside;
            facet.firstOutside = p;
            if (facet.farthestOutside == kNone || height > facet.farthestHeight) {
                facet.farthestOutside = p;
                facet.farthestHeight = height;
            }
            return;
        }
    }

    /// Replaces all triangles that the farthest point above this one sees by a cone.
    void absorbFarthestOf(std::int32_t facet) {
        const std::int32_t apex = at(facet).farthestOutside;
        findVisible(facet, apex);
        buildCone(apex);
        for (const std::int32_t f : m_visible) {
            std::int32_t p = at(f).firstOutside;
            while (p != kNone) {
                const std::int32_t next = m_nextOutside[static_cast<std::size_t>(p)];
                if (p != apex) assign(p);
                p = next;
            }
            at(f).isAlive = false;
            at(f).firstOutside = kNone;
        }
        m_free.insert(m_free.end(), m_visible.begin(), m_visible.end());
        for (const std::int32_t f : m_cone) {
            if (at(f).firstOutside != kNone) m_pending.push_back(f);
        }
    }

    /// Collects the triangles with the apex above them, which hang together, and the edges around.
    void findVisible(std::int32_t start, std::int32_t apex) {
        m_visible.assign(1, start);
        m_horizon.clear();
        at(start).isVisible = true;
        for (std::size_t i = 0; i < m_visible.size(); ++i) {
            const std::int32_t f = m_visible[i];
            for (std::size_t k = 0; k < 3; ++k) {
                const std::int32_t across = at(f).neighbours[k];
                if (at(across).isVisible) continue;
                if (at(across).plane.isAbove(point(apex))) {
                    at(across).isVisible = true;
                    m_visible.push_back(across);
                } else {
                    m_horizon.push_back({at(f).corners[k], at(f).corners[(k + 1) % 3], across});
                }
            }
        }
    }

    void buildCone(std::int32_t apex) {
        m_cone.clear();
        for (const HorizonEdge& edge : m_horizon) {
            const std::int32_t facet = addFacet(edge.from, edge.to, apex);
            m_cone.push_back(facet);
            m_coneAt[static_cast<std::size_t>(edge.from)] = facet;
            at(facet).neighbours[0] = edge.outerFacet;
            Facet& outer = at(edge.outerFacet);
            for (std::size_t k = 0; k < 3; ++k) {
                if (outer.corners[k] == edge.to && outer.corners[(k + 1) % 3] == edge.from) {
                    outer.neighbours[k] = facet;
                }
            }
        }
        // The horizon is one closed loop: the triangle over the next edge starts at this one's end.
        for (std::size_t i = 0; i < m_horizon.size(); ++i) {
            const std::int32_t next = m_coneAt[static_cast<std::size_t>(m_horizon[i].to)];
            at(m_cone[i]).neighbours[1] = next;
            at(next).neighbours[2] = m_cone[i];
        }
    }

    const std::vector<GridPoint>& m_points;
    std::vector<std::int32_t> m_nextOutside;
    std::vector<std::int32_t> m_coneAt;  ///< the newest cone's triangle over the edge from a point
    std::vector<Facet> m_facets;
    std::vector<std::int32_t> m_free;
    std::vector<std::int32_t> m_pending;
    std::vector<std::int32_t> m_visible;
    std::vector<std::int32_t> m_cone;
    std::vector<HorizonEdge> m_horizon;
};

}  // namespace

Span findSpan(const std::vector<GridPoint>& points) {
    Span span;
    if (points.empty()) return span;
    span.dimension = 0;
    // The lowest point and the farthest from it, which are the ends where all lie on a line; then
    // the farthest from their line and from their plane. Where the rounded measure is largest it is
    // not zero, or all are.
    span.points[0] =
        static_cast<std::int32_t>(std::min_element(points.begin(), points.end()) - points.begin());
    const auto at = [&](int i) {
        return points[static_cast<std::size_t>(span.points[static_cast<std::size_t>(i)])];
    };
    span.points[1] =
        farthest(points, [o = at(0)](const GridPoint& p) { return lengthBound(difference(p, o)); });
    if (at(1) == at(0)) return span;
    span.dimension = 1;
    const WideVector line = difference(at(1), at(0));
    span.points[2] = farthest(points, [&, o = at(0)](const GridPoint& p) {
        return lengthBound(cross(line, difference(p, o)));
    });
    if (cross(line, difference(at(2), at(0))).isZero()) return span;
    span.dimension = 2;
    const ExactPlane plane(at(0), at(1), at(2));
    span.points[3] = farthest(points, [&](const GridPoint& p) {
        // The rounded height cannot tell the least from zero: points off the plane go first.
        return plane.side(p) == 0 ? -1.0 : std::fabs(plane.height(p));
    });
    if (plane.side(at(3)) != 0) span.dimension = 3;
    return span;
}

std::vector<HullFacet> quickHull(const std::vector<GridPoint>& points, const Span& span) {
    TESK_ASSERT(span.dimension == 3);
    return Builder(points, span).takeSurface();
}

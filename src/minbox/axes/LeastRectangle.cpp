#include "minbox/axes/LeastRectangle.h"

#include <algorithm>
#include <cmath>

namespace Tesk::minbox {
namespace {

using PlaneVector = UVector2<double>;

double dot(const PlaneVector& a, const PlaneVector& b) {
    return a.x * b.x + a.y * b.y;
}

/// A run of corners to remove, and how far it may reach. Seen from the corner before the run, the
/// later corners of a convex polygon lie farther and farther to the left. The line to the corner
/// after the run must pass each removed corner within the tolerance.
class Run {
 public:
    Run(const UPoint2<double>& before, double tolerance)
        : m_before(before), m_tolerance(tolerance) {}

    /// Leaves one more corner out.
    void add(const UPoint2<double>& corner) {
        const PlaneVector way = corner - m_before;
        const double length = std::sqrt(dot(way, way));
        if (!(length > m_tolerance)) return;
        m_length = std::max(m_length, length);
        // The tangent from the corner before the run to the left side of a circle about this one.
        const double sine = m_tolerance / length;
        const double cosine = std::sqrt(1.0 - sine * sine);
        const PlaneVector leftmost(way.x * cosine - way.y * sine, way.x * sine + way.y * cosine);
        if (m_leftmost == PlaneVector() || leftmost * m_leftmost > 0.0) m_leftmost = leftmost;
    }

    /// Whether the run may end before a corner.
    bool mayEndAt(const UPoint2<double>& corner) const {
        const PlaneVector way = corner - m_before;
        return !(m_leftmost * way > 0.0) && m_length <= std::sqrt(dot(way, way)) + m_tolerance;
    }

 private:
    UPoint2<double> m_before;
    double m_tolerance;
    double m_length = 0.0;   ///< to the farthest corner left out
    PlaneVector m_leftmost;  ///< zero if nothing limits the run yet
};

/// An extreme corner, which no run may remove.
std::size_t farthestFromFirst(const PlanePolygon& polygon) {
    std::size_t farthest = 0;
    double most = 0.0;
    for (std::size_t i = 1; i < polygon.size(); ++i) {
        const PlaneVector way = polygon[i] - polygon[0];
        if (dot(way, way) > most) {
            most = dot(way, way);
            farthest = i;
        }
    }
    return farthest;
}

/// Finds the corner that lies farthest along a direction which turns counter-clockwise from call to
/// call.
class SupportPoint {
 public:
    explicit SupportPoint(const PlanePolygon& polygon)
        : m_polygon(polygon), m_slack(kSlack * extentOf(polygon)) {}

    /// The greatest projection on a direction, seen from a corner.
    ///
    /// @param from  a position at or before the farthest corner; those in between ascend
    double advance(std::size_t from, const UPoint2<double>& origin, const PlaneVector& direction) {
        // Rounding may make a corner seem lower than the one before it; the walk ends only at one
        // that is clearly lower.
        const double slack = m_slack * std::sqrt(dot(direction, direction));
        m_position = std::max(m_position, from);
        double most = project(m_position, origin, direction);
        const std::size_t last = m_position + m_polygon.size();
        for (std::size_t i = m_position + 1; i < last; ++i) {
            const double value = project(i, origin, direction);
            if (value < most - slack) break;
            if (value > most) {
                most = value;
                m_position = i;
            }
        }
        return most;
    }

    /// May exceed the number of corners: it goes on counting after the first round.
    std::size_t position() const { return m_position; }

 private:
    /// Relative to the polygon's extent; far above the rounding of projections.
    static constexpr double kSlack = 1e-12;

    double project(std::size_t i, const UPoint2<double>& origin,
                   const PlaneVector& direction) const {
        return dot(m_polygon[i % m_polygon.size()] - origin, direction);
    }

    const PlanePolygon& m_polygon;
    double m_slack;
    std::size_t m_position = 0;
};

}  // namespace

double extentOf(const PlanePolygon& polygon) {
    if (polygon.empty()) return 0.0;
    UPoint2<double> low = polygon[0];
    UPoint2<double> high = polygon[0];
    for (const UPoint2<double>& p : polygon) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    return std::max(high.x - low.x, high.y - low.y);
}

PlanePolygon withoutNearCorners(const PlanePolygon& polygon, double tolerance) {
    const std::size_t size = polygon.size();
    if (size < 3) return polygon;
    const std::size_t start = farthestFromFirst(polygon);
    const auto corner = [&](std::size_t i) { return polygon[(start + i) % size]; };
    PlanePolygon kept;
    for (std::size_t i = 0; i < size;) {
        kept.push_back(corner(i));
        Run run(corner(i), tolerance);
        for (++i; i < size; ++i) {
            run.add(corner(i));
            if (!run.mayEndAt(corner(i + 1))) break;
        }
    }
    return kept;
}

std::size_t leastRectangleEdge(const PlanePolygon& polygon) {
    SupportPoint right(polygon);
    SupportPoint top(polygon);
    SupportPoint left(polygon);
    std::size_t least = 0;
    double leastArea = -1.0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const UPoint2<double>& base = polygon[i];
        const PlaneVector along = polygon[(i + 1) % polygon.size()] - base;
        const PlaneVector inward(-along.y, along.x);
        const PlaneVector back(-along.x, -along.y);
        const double toRight = right.advance(i + 1, base, along);
        const double height = top.advance(right.position(), base, inward);
        const double toLeft = left.advance(top.position(), base, back);
        const double area = (toRight + toLeft) * height / dot(along, along);
        if (leastArea < 0.0 || area < leastArea) {
            leastArea = area;
            least = i;
        }
    }
    return least;
}

}  // namespace Tesk::minbox

#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

namespace Tesk::pose {

/// A point of a plane.
using PlanePoint = std::array<double, 2>;

/// Calls that give a point, 0 up to, and not with, a count.
using PointAt = std::function<PlanePoint(std::size_t)>;

/// A convex polygon through some of the farthest of points: a part of their convex hull. Its inside
/// is smaller by a margin above all rounding.
class InnerPolygon {
 public:
    /// No polygon, which holds nothing, if the points span no area.
    InnerPolygon(std::size_t count, const PointAt& pointAt);

    /// Whether a point lies inside.
    bool holds(const PlanePoint& p) const;

 private:
    struct Side {
        double normalX, normalY;  ///< inward, a unit vector
        double offset;            ///< points farther inside than this are held
    };

    void setSides(const std::vector<PlanePoint>& polygon);
    static double depthOf(const Side& side, const PlanePoint& p);

    std::vector<Side> m_sides;
    PlanePoint m_middle{};
    double m_radiusSq = 0.0;  ///< of a circle inside, which holds most points
};

/// Which points are the corners of their convex hull, counter-clockwise; fewer than three if the
/// points span no area. Points that are not finite are left out.
///
/// Points inside their InnerPolygon are skipped: of a million points few remain to be sorted.
std::vector<std::size_t> hullPlacesOf(std::size_t count, const PointAt& pointAt);

/// The corners themselves.
std::vector<PlanePoint> hullOf(std::size_t count, const PointAt& pointAt);

}  // namespace Tesk::pose

#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

namespace Tesk::pose {

/// A point of a plane.
using PlanePoint = std::array<double, 2>;

/// Which points are the corners of their convex hull, counter-clockwise; fewer than three if the
/// points span no area. Points that are not finite are left out.
///
/// Points inside the polygon through some of the farthest, by a margin above all rounding, are
/// skipped: of a million points few remain to be sorted.
///
/// @param pointAt  gives a point, 0 up to, and not with, count
std::vector<std::size_t> hullPlacesOf(std::size_t count,
                                      const std::function<PlanePoint(std::size_t)>& pointAt);

/// The corners themselves.
std::vector<PlanePoint> hullOf(std::size_t count,
                               const std::function<PlanePoint(std::size_t)>& pointAt);

}  // namespace Tesk::pose

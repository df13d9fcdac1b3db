#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "GridPoints.h"
#include "QuickHull.h"

namespace Tesk::hull {

/// The faces of a hull: polygons, counter-clockwise seen from outside, without three corners in
/// line.
class HullFaces {
 public:
    std::size_t size() const { return m_ends.size(); }
    std::span<const std::int32_t> operator[](std::size_t face) const;

    /// All polygons' corners, one polygon after the other.
    const std::vector<std::int32_t>& corners() const { return m_corners; }
    std::vector<std::int32_t>& corners() { return m_corners; }

    void addCorner(std::int32_t corner) { m_corners.push_back(corner); }
    void endFace() { m_ends.push_back(m_corners.size()); }

 private:
    std::vector<std::int32_t> m_corners;
    std::vector<std::size_t> m_ends;
};

/// The faces of a triangulated hull: merges coplanar triangles, and drops corners that are not
/// extreme points. Corners are point indices.
HullFaces mergeFacets(const std::vector<GridPoint>& points, const std::vector<HullFacet>& facets);

/// The two sides of the convex polygon of points that span a plane.
HullFaces planarFaces(const std::vector<GridPoint>& points, const Span& span);

}  // namespace Tesk::hull

#pragma once

#include <vector>

#include "TeskSDKCommonTools/ConvexHull3.h"
#include "minbox/hull/HullLinks.h"
#include "minbox/hull/HullPoints.h"

namespace Tesk::minbox {

/// The convex hull of a call's points as the searches use it. Not copied: all searches of the call
/// refer to it.
class SearchHull {
 public:
    /// @param points  n points; may be null
    SearchHull(int n, const UPoint3<float>* points, const SearchConstants& constants);
    SearchHull(const SearchHull&) = delete;
    SearchHull& operator=(const SearchHull&) = delete;

    const gte::ConvexHull3& hull() const { return m_hull; }
    const HullPoints& points() const { return m_points; }
    const HullLinks& links() const { return m_links; }
    int faceCount() const { return static_cast<int>(m_normals.size()); }

    /// False for a point, a segment or no vertices.
    bool hasFaces() const { return faceCount() > 0; }

    /// The normal of a triangle, (p2 − p0) × (p1 − p0), not normalised: it points inwards. It is
    /// exact, because on the hull's grid its products are whole numbers below 2^53 times a power
    /// of two.
    const Vector& normal(int face) const { return m_normals[static_cast<std::size_t>(face)]; }
    const std::vector<Vector>& normals() const { return m_normals; }

 private:
    gte::ConvexHull3 m_hull;
    HullPoints m_points;
    std::vector<Vector> m_normals;
    HullLinks m_links;
};

}  // namespace Tesk::minbox

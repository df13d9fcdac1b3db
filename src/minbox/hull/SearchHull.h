#pragma once

#include <optional>
#include <vector>

#include "TeskSDKCommonTools/ConvexHull3.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/HullLinks.h"

/// The convex hull of a call's points, and its vertices in the unit of the search: set into the
/// implementation object for as long as this lives.
class SearchHull {
 public:
    SearchHull(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points);
    ~SearchHull();
    SearchHull(const SearchHull&) = delete;
    SearchHull& operator=(const SearchHull&) = delete;

    const gte::ConvexHull3& hull() const { return m_hull; }
    int faceCount() const { return static_cast<int>(m_hull.getTriangles().size()); }

    /// Whether the hull is at least a polygon; a point or a segment has no faces to search.
    bool hasFaces() const { return faceCount() > 0; }

    /// One normal per triangle, (p2 − p0) × (p1 − p0), not normalised: it points inwards. Exact, as
    /// the hull's grid leaves its products whole numbers below 2^53 times a power of two.
    const std::vector<Vector>& normals() const { return m_normals; }

    /// How the triangles hang together.
    const HullLinks& links() const { return *m_links; }

 private:
    void formNormals();

    MinBoundingBoxImpl& m_impl;
    gte::ConvexHull3 m_hull;
    std::vector<Vector> m_normals;
    std::optional<HullLinks> m_links;
};

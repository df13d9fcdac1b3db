#pragma once

#include <vector>

#include "BoxCandidate.h"
#include "MinBoundingBoxImpl.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

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

    /// One normal per triangle, (p2 − p0) × (p1 − p0), not normalised: it points inwards.
    const std::vector<Vector>& normals() const { return m_normals; }

 private:
    void formNormals();

    MinBoundingBoxImpl& m_impl;
    gte::ConvexHull3 m_hull;
    std::vector<Vector> m_normals;
};

#pragma once

#include <array>
#include <utility>
#include <vector>

#include "TeskDataBasic/UVector3.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

/// A convex hull as the plain box searches read it.
struct PlainHull {
    /// @param pointCount  the number of points that the hull was built from
    PlainHull(const gte::ConvexHull3& hull, int pointCount);

    int pointCount;
    std::vector<UVector3<double>> points;  ///< the hull's vertices
    std::vector<std::array<int, 3>> triangles;
    std::vector<gte::HullEdge> edges;
    /// (p2 − p0) × (p1 − p0) of every triangle, not normalised.
    std::vector<UVector3<double>> normals;
};

/// The silhouette of a hull seen along the normal of face `face`: every edge between a triangle
/// that faces away and one that does not links its two ends, and a walk along the links from the
/// last such edge gives the vertices. Empty where no edge qualifies.
///
/// @param next   the links, one per point, all zero at first; a range of faces shares them without
///               clearing
/// @param limit  the walk ends after that many vertices where it does not come back to its start
std::vector<int> plainOutline(const PlainHull& hull, int face, std::vector<int>& next, int limit);

/// The faces, split into ranges [first, last] as worker threads get them: one range where there are
/// fewer than two threads or more threads than faces.
std::vector<std::pair<int, int>> plainFaceRanges(const PlainHull& hull, int threadCount);

#pragma once

#include <array>
#include <vector>

#include "TeskDataBasic/UPoint3.h"
#include "TeskSDKCommonTools/Export.h"

namespace gte {

/// An edge of a triangulated hull: its end vertices, with a < b, and the triangles on its two
/// sides. f0 traverses it from a to b, f1 from b to a.
struct HullEdge {
    int a;
    int b;
    int f0;
    int f1;
};

/// The exact convex hull of points in space.
///
/// Every side test is exact, so the result is convex without any tolerance: no vertex of the hull
/// lies outside the plane of a triangle, only extreme points are vertices, faces with more than
/// three corners are triangulated as fans, no triangle has zero area, and the surface is closed. It
/// depends on the set of points only, not on their order: vertices are sorted by x, then y, then z;
/// faces by their lowest vertex and the one after it; edges by a, then b.
///
/// Coordinates are first rounded to a grid whose step is 2^-26 of the largest extent, after that
/// has been rounded up to a power of two. This moves a point by less than the rounding of a float
/// of that size. It removes the noise of transformed parts (1e-16 beside 25), which would otherwise
/// break every flat face into slivers. The hull's vertices are the rounded points, exactly floats.
///
/// Non-finite points are ignored. Points in a plane give their exact polygon, covered on both
/// sides: a closed surface without volume, with each fan diagonal in the edge list twice, once per
/// side. Points on a line give the two ends, a single point gives itself, both without triangles
/// and edges.
///
/// Expected cost O(n log n). Source: C. B. Barber, D. P. Dobkin, H. Huhdanpaa, "The Quickhull
/// algorithm for convex hulls", ACM TOMS 22 (1996), here with exact tests.
class TESK_TOOLS_API ConvexHull3 {
 public:
    /// @param points     n points; may be null if n is below 1
    /// @param n          number of points
    /// @param dimension  always 3
    ConvexHull3(const UPoint3<float>* points, int n, int dimension);

    const std::vector<UPoint3<float>>& getVertices() const { return m_vertices; }

    /// Vertex indices, counter-clockwise seen from outside.
    const std::vector<std::array<int, 3>>& getTriangles() const { return m_triangles; }

    const std::vector<HullEdge>& getHullEdges() const { return m_edges; }

    /// −1 if no point is finite; 0 for a point, 1 for a segment, 2 for a polygon, 3 for a solid.
    int getDimension() const { return m_dimension; }

 private:
    std::vector<UPoint3<float>> m_vertices;
    std::vector<std::array<int, 3>> m_triangles;
    std::vector<HullEdge> m_edges;
    int m_dimension = -1;
};

}  // namespace gte

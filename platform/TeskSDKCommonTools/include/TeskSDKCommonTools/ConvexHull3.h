#pragma once

#include <array>
#include <vector>

#include "TeskDataBasic/UPoint3.h"
#include "TeskSDKCommonTools/Export.h"

namespace gte {

/// An edge of a triangulated hull: its end vertices, a below b, and the triangles on its two
/// sides; f0 runs along it from a to b, f1 from b to a.
struct HullEdge {
    int a;
    int b;
    int f0;
    int f1;
};

/// The exact convex hull of points in space.
///
/// Every side test is decided exactly, so the result is convex without any tolerance: no triangle
/// has a vertex of the hull outside it, only extreme points are vertices, faces of more than three
/// corners are triangulated as fans, no triangle has zero area, and the surface is closed. It
/// depends on the set of points only, not on their order: vertices go by ascending x, then y, then
/// z; faces by their lowest vertex and the one after it; edges by a, then b.
///
/// For the hull, coordinates are rounded to a grid of 2^-26 of the largest extent (to the next
/// power of two), which moves a point by less than a float's rounding at that extent: it removes
/// the noise of transformed parts (1e-16 beside 25) that would otherwise make slivers of every
/// flat face. Vertices are the rounded points; they are floats still.
///
/// Points that are not finite are left out. Lower dimensions: points in a plane give the exact
/// polygon covered on both sides (a closed surface without volume; each fan diagonal stands in the
/// edge list twice, once per side); points on a line give the two ends, a single point itself, and
/// both neither triangles nor edges.
///
/// Expected cost O(n log n). Source: C. B. Barber, D. P. Dobkin, H. Huhdanpaa, "The Quickhull
/// algorithm for convex hulls", ACM TOMS 22 (1996), here with exact tests.
class TESK_TOOLS_API ConvexHull3 {
 public:
    /// @param points     n points; may be null where n is below 1
    /// @param dimension  always 3
    ConvexHull3(const UPoint3<float>* points, int n, int dimension);

    const std::vector<UPoint3<float>>& getVertices() const { return m_vertices; }

    /// Vertex indices, counter-clockwise seen from outside.
    const std::vector<std::array<int, 3>>& getTriangles() const { return m_triangles; }

    const std::vector<HullEdge>& getHullEdges() const { return m_edges; }

    /// −1 without a finite point; 0 for a point, 1 for a segment, 2 for a polygon, 3 for a solid.
    int getDimension() const { return m_dimension; }

 private:
    std::vector<UPoint3<float>> m_vertices;
    std::vector<std::array<int, 3>> m_triangles;
    std::vector<HullEdge> m_edges;
    int m_dimension = -1;
};

}  // namespace gte

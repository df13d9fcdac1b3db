#include "TeskSDKCommonTools/ConvexHull3.h"

#include <algorithm>
#include <span>

#include "HullFaces.h"
#include "QuickHull.h"
#include "TeskCommon/Groups.h"

namespace gte {
namespace {

using namespace Tesk::hull;

using Triangles = std::vector<std::array<int, 3>>;

/// The points that are corners, in ascending order of coordinates. Renumbers the faces' corners
/// accordingly.
std::vector<GridPoint> numberVertices(const std::vector<GridPoint>& points, HullFaces& faces) {
    std::vector<std::int32_t> order = faces.corners();
    std::vector<bool> isSeen(points.size(), false);
    std::erase_if(order, [&](std::int32_t p) {
        const bool wasSeen = isSeen[static_cast<std::size_t>(p)];
        isSeen[static_cast<std::size_t>(p)] = true;
        return wasSeen;
    });
    const auto point = [&](std::int32_t p) { return points[static_cast<std::size_t>(p)]; };
    std::sort(order.begin(), order.end(),
              [&](std::int32_t a, std::int32_t b) { return point(a) < point(b); });
    std::vector<std::int32_t> place(points.size());
    std::vector<GridPoint> vertices;
    vertices.reserve(order.size());
    for (const std::int32_t p : order) {
        place[static_cast<std::size_t>(p)] = static_cast<std::int32_t>(vertices.size());
        vertices.push_back(point(p));
    }
    for (std::int32_t& corner : faces.corners()) corner = place[static_cast<std::size_t>(corner)];
    return vertices;
}

/// Identifies a face by its lowest vertex, where its fan begins, and the vertex after that: no
/// other face has the same two.
struct FaceKey {
    int lowest;
    int second;
    std::size_t face;
    std::size_t start;  ///< place of the lowest vertex in the polygon
};

FaceKey keyOf(const HullFaces& faces, std::size_t face) {
    const auto polygon = faces[face];
    const auto lowest = std::min_element(polygon.begin(), polygon.end());
    const auto start = static_cast<std::size_t>(lowest - polygon.begin());
    return {*lowest, polygon[(start + 1) % polygon.size()], face, start};
}

Triangles fanTriangles(const HullFaces& faces) {
    std::vector<FaceKey> keys;
    keys.reserve(faces.size());
    for (std::size_t f = 0; f < faces.size(); ++f) keys.push_back(keyOf(faces, f));
    std::sort(keys.begin(), keys.end(), [](const FaceKey& a, const FaceKey& b) {
        return a.lowest != b.lowest ? a.lowest < b.lowest : a.second < b.second;
    });
    Triangles triangles;
    triangles.reserve(faces.corners().size() - 2 * faces.size());
    for (const FaceKey& key : keys) {
        const auto polygon = faces[key.face];
        const auto corner = [&](std::size_t i) {
            return polygon[(key.start + i) % polygon.size()];
        };
        for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
            triangles.push_back({corner(0), corner(i), corner(i + 1)});
        }
    }
    return triangles;
}

/// One side of a triangle, stored with its lower vertex.
struct HalfEdge {
    int upper;
    int triangle;
    bool runsUp;  ///< from the lower to the upper vertex
};

/// The half-edges under one vertex belong together in pairs. If a pair of vertices has two edges
/// (the diagonals of a flat hull, one per side), each side's triangles are consecutive.
void appendEdges(int lower, std::span<HalfEdge> halfEdges, std::vector<HullEdge>& edges) {
    std::sort(halfEdges.begin(), halfEdges.end(), [](const HalfEdge& a, const HalfEdge& b) {
        return a.upper != b.upper ? a.upper < b.upper : a.triangle < b.triangle;
    });
    for (std::size_t i = 0; i < halfEdges.size(); i += 2) {
        const HalfEdge& h = halfEdges[i];
        const int other = halfEdges[i + 1].triangle;
        edges.push_back(
            {lower, h.upper, h.runsUp ? h.triangle : other, h.runsUp ? other : h.triangle});
    }
}

std::vector<HullEdge> edgesOf(const Triangles& triangles, std::size_t vertexCount) {
    Tesk::Groups<HalfEdge> halfEdges(vertexCount, [&](auto visit) {
        for (std::size_t t = 0; t < triangles.size(); ++t) {
            for (std::size_t k = 0; k < 3; ++k) {
                const int a = triangles[t][k];
                const int b = triangles[t][(k + 1) % 3];
                visit(static_cast<std::size_t>(std::min(a, b)),
                      HalfEdge{std::max(a, b), static_cast<int>(t), a < b});
            }
        }
    });
    std::vector<HullEdge> edges;
    edges.reserve(triangles.size() * 3 / 2);
    for (std::size_t v = 0; v < vertexCount; ++v) {
        appendEdges(static_cast<int>(v), halfEdges[v], edges);
    }
    return edges;
}

}  // namespace

ConvexHull3::ConvexHull3(const UPoint3<float>* points, int n, int /*dimension*/) {
    const GridPoints grid = roundToGrid(points, n);
    const Span span = findSpan(grid.points);
    m_dimension = span.dimension;
    if (m_dimension < 0) return;
    if (m_dimension < 2) {
        std::array ends = {grid.points[static_cast<std::size_t>(span.points[0])],
                           grid.points[static_cast<std::size_t>(span.points[1])]};
        std::sort(ends.begin(), ends.end());
        m_vertices.push_back(grid.position(ends[0]));
        if (m_dimension == 1) m_vertices.push_back(grid.position(ends[1]));
        return;
    }
    HullFaces faces = m_dimension == 3 ? mergeFacets(grid.points, quickHull(grid.points, span))
                                       : planarFaces(grid.points, span);
    for (const GridPoint& p : numberVertices(grid.points, faces)) {
        m_vertices.push_back(grid.position(p));
    }
    m_triangles = fanTriangles(faces);
    m_edges = edgesOf(m_triangles, m_vertices.size());
}

}  // namespace gte

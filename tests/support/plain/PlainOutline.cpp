#include "plain/PlainOutline.h"

PlainHull::PlainHull(const gte::ConvexHull3& hull, int pointCountOfInput)
    : pointCount(pointCountOfInput), triangles(hull.getTriangles()), edges(hull.getHullEdges()) {
    for (const UPoint3<float>& p : hull.getVertices()) {
        points.push_back(
            {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])});
    }
    for (const auto& [i0, i1, i2] : triangles) {
        normals.push_back((points[i2] - points[i0]) * (points[i1] - points[i0]));
    }
}

namespace {

/// Sets the links of the silhouette's edges and returns the start of the walk, −1 without any.
int linkSilhouette(const PlainHull& hull, const std::vector<double>& dots, std::vector<int>& next) {
    int start = -1;
    for (const gte::HullEdge& edge : hull.edges) {
        int facingAway = -1;
        if (dots[edge.f0] < 0.0 && dots[edge.f1] >= 0.0) {
            facingAway = edge.f0;
        } else if (dots[edge.f1] < 0.0 && dots[edge.f0] >= 0.0) {
            facingAway = edge.f1;
        } else {
            continue;
        }
        const std::array<int, 3>& triangle = hull.triangles[facingAway];
        int k = 0;
        while (k < 3 && triangle[k] != edge.a) ++k;
        if (k == 3) continue;
        const int previous = triangle[(k + 2) % 3];
        if (previous == edge.b) {
            next[edge.b] = edge.a;
        } else {
            next[edge.a] = edge.b;
        }
        start = edge.a;
    }
    return start;
}

}  // namespace

std::vector<int> plainOutline(const PlainHull& hull, int face, std::vector<int>& next, int limit) {
    std::vector<double> dots;
    for (const UVector3<double>& normal : hull.normals) dots.push_back(normal | hull.normals[face]);
    std::vector<int> outline;
    const int start = linkSilhouette(hull, dots, next);
    if (start == -1) return outline;
    int v = start;
    do {
        outline.push_back(v);
        v = next[v];
    } while (v != start && static_cast<int>(outline.size()) < limit);
    return outline;
}

std::vector<std::pair<int, int>> plainFaceRanges(const PlainHull& hull, int threadCount) {
    const int faces = static_cast<int>(hull.triangles.size());
    if (threadCount < 2 || faces < threadCount) return {{0, faces - 1}};
    const int each = faces / threadCount;
    std::vector<std::pair<int, int>> ranges;
    for (int t = 0; t < threadCount; ++t) ranges.emplace_back(t * each, t * each + each - 1);
    ranges.back().second = faces - 1;
    return ranges;
}

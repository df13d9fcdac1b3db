#include "checks/ShadowRectangle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

using Real = long double;
using Vector = UVector3<Real>;

/// UVector3 measures lengths in double.
Real lengthOf(const Vector& v) {
    return std::sqrt(v | v);
}

std::vector<Vector> verticesOf(const gte::ConvexHull3& hull) {
    std::vector<Vector> vertices;
    for (const UPoint3<float>& p : hull.getVertices()) {
        vertices.push_back((p - UPoint3<float>()).As<Real>());
    }
    const Vector origin = vertices.front();
    for (Vector& v : vertices) v = v - origin;
    return vertices;
}

Real widthAlong(const std::vector<Vector>& vertices, const Vector& direction) {
    Real low = vertices[0] | direction;
    Real high = low;
    for (const Vector& v : vertices) {
        const Real x = v | direction;
        low = std::min(low, x);
        high = std::max(high, x);
    }
    return high - low;
}

/// Of every triangle: 1 where it clearly faces along the axis, −1 against it, 0 where neither is
/// sure.
std::vector<int> facesOf(const gte::ConvexHull3& hull, const std::vector<Vector>& vertices,
                         const Vector& unit) {
    constexpr Real kClear = 1e-9L;
    std::vector<int> faces;
    for (const auto& corners : hull.getTriangles()) {
        const auto at = [&](std::size_t k) {
            return vertices[static_cast<std::size_t>(corners[k])];
        };
        const Vector normal = (at(1) - at(0)) * (at(2) - at(0));
        const Real dot = normal | unit;
        const bool isClear = std::fabs(dot) > kClear * lengthOf(normal);
        faces.push_back(!isClear ? 0 : dot > 0 ? 1 : -1);
    }
    return faces;
}

/// The edges between a triangle on either side: those of the shadow's outline are among them.
std::vector<Vector> edgesOfOutline(const gte::ConvexHull3& hull,
                                   const std::vector<Vector>& vertices, const Vector& unit) {
    const std::vector<int> faces = facesOf(hull, vertices, unit);
    std::vector<Vector> edges;
    for (const gte::HullEdge& edge : hull.getHullEdges()) {
        const int product =
            faces[static_cast<std::size_t>(edge.f0)] * faces[static_cast<std::size_t>(edge.f1)];
        if (product > 0) continue;
        edges.push_back(vertices[static_cast<std::size_t>(edge.b)] -
                        vertices[static_cast<std::size_t>(edge.a)]);
    }
    if (edges.empty()) edges.push_back(vertices.back() - vertices.front());
    return edges;
}

}  // namespace

ShadowRectangle leastShadowRectangle(const gte::ConvexHull3& hull, const UVector3<float>& axis) {
    constexpr Real kSteep = 1e-15L;
    const std::vector<Vector> vertices = verticesOf(hull);
    const auto given = axis.As<Real>();
    const Vector unit = given / lengthOf(given);
    ShadowRectangle least;
    least.depth = widthAlong(vertices, unit);
    bool isFirst = true;
    for (const Vector& edge : edgesOfOutline(hull, vertices, unit)) {
        // An edge along the axis has no direction across it, but for rounding.
        const Vector across = unit * edge;
        if (!(lengthOf(across) > kSteep * lengthOf(edge))) continue;
        const Vector square = across - unit * (across | unit);
        const Vector inward = square / lengthOf(square);
        const Real width = widthAlong(vertices, inward * unit);
        const Real height = widthAlong(vertices, inward);
        if (isFirst || width * height < least.area) least.area = width * height;
        isFirst = false;
        least.extent = std::max({least.extent, width, height});
    }
    return least;
}

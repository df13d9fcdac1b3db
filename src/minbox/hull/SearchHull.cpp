#include "minbox/hull/SearchHull.h"

#include <algorithm>
#include <cmath>

#include "TeskDataBasic/UBox3.h"

namespace Tesk::minbox {
namespace {

/// The longest side of the box around the vertices.
double longestSide(const std::vector<UPoint3<float>>& vertices) {
    UBox3<float> box;
    for (const UPoint3<float>& p : vertices) box.Extend(p);
    const auto side = [](float low, float high) {
        return static_cast<double>(high) - static_cast<double>(low);
    };
    return std::max(
        {side(box.MinX(), box.MaxX()), side(box.MinY(), box.MaxY()), side(box.MinZ(), box.MaxZ())});
}

/// The length by which coordinates are divided. Scores are floats that grow with the sixth power of
/// the part's size, so very small and very large parts are scaled, by a power of two, to a size of
/// about 1. Parts from 2^-17 to 2^16 keep their unit.
double unitFor(double size) {
    constexpr int kMaxExponent = 16;
    int exponent = 0;
    std::frexp(size, &exponent);
    return size == 0.0 || std::abs(exponent) <= kMaxExponent ? 1.0 : std::ldexp(1.0, exponent);
}

HullPoints pointsOf(const std::vector<UPoint3<float>>& vertices, const SearchConstants& constants) {
    const double unitLength = unitFor(longestSide(vertices));
    std::vector<double> coordinates;
    coordinates.reserve(vertices.size() * 3);
    for (const UPoint3<float>& p : vertices) {
        for (int axis = 0; axis < 3; ++axis) {
            coordinates.push_back(static_cast<double>(p[axis]) / unitLength);
        }
    }
    return HullPoints(std::move(coordinates), unitLength, constants);
}

std::vector<Vector> normalsOf(const gte::ConvexHull3& hull, const HullPoints& points) {
    std::vector<Vector> normals;
    normals.reserve(hull.getTriangles().size());
    for (const auto& [i0, i1, i2] : hull.getTriangles()) {
        const Vector p0 = points[i0];
        normals.push_back((points[i2] - p0) * (points[i1] - p0));
    }
    return normals;
}

}  // namespace

SearchHull::SearchHull(int n, const UPoint3<float>* points, const SearchConstants& constants)
    : m_hull(points, points == nullptr ? 0 : n, 3),
      m_points(pointsOf(m_hull.getVertices(), constants)),
      m_normals(normalsOf(m_hull, m_points)),
      m_links(m_hull, m_normals) {
    TESK_ASSERT(2 * m_hull.getHullEdges().size() == 3 * m_hull.getTriangles().size());
}

}  // namespace Tesk::minbox

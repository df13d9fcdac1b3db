#include "minbox/hull/SearchHull.h"

#include <algorithm>
#include <cmath>

namespace {

/// The largest side of the box around the vertices.
double largestExtent(const std::vector<UPoint3<float>>& vertices) {
    double extent = 0.0;
    for (int axis = 0; axis < 3; ++axis) {
        const auto [low, high] =
            std::minmax_element(vertices.begin(), vertices.end(),
                                [axis](const auto& a, const auto& b) { return a[axis] < b[axis]; });
        if (low == vertices.end()) continue;
        const double lowest = static_cast<double>((*low)[axis]);
        extent = std::max(extent, static_cast<double>((*high)[axis]) - lowest);
    }
    return extent;
}

/// Scores go with the sixth power of the part's size, in float. Parts between a hundredth of a
/// micrometre and 65 metres (in millimetres) are left as they are; others are brought to about 1.
double unitFor(double extent) {
    constexpr int kUsual = 16;
    int exponent = 0;
    std::frexp(extent, &exponent);
    return extent == 0.0 || std::abs(exponent) <= kUsual ? 1.0 : std::ldexp(1.0, exponent);
}

}  // namespace

SearchHull::SearchHull(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points)
    : m_impl(impl), m_hull(points, points == nullptr ? 0 : n, 3) {
    const std::vector<UPoint3<float>>& vertices = m_hull.getVertices();
    impl.unitLength = unitFor(largestExtent(vertices));
    auto coordinates = std::make_unique<std::vector<double>>();
    coordinates->reserve(vertices.size() * 3);
    for (const UPoint3<float>& p : vertices) {
        for (int axis = 0; axis < 3; ++axis) {
            coordinates->push_back(static_cast<double>(p[axis]) / impl.unitLength);
        }
    }
    impl.computePoints = std::move(coordinates);
    // No walk over the hull ends before it has met all vertices.
    impl.pointCount = std::max(impl.pointCount, static_cast<std::int32_t>(vertices.size()));
    impl.points = points;
    impl.hullVertices = &vertices;
    impl.hullTriangles = &m_hull.getTriangles();
    impl.hullEdges = &m_hull.getHullEdges();
    formNormals();
    m_links.emplace(impl, m_normals);
}

SearchHull::~SearchHull() {
    m_impl.computePoints.reset();
    m_impl.points = nullptr;
    m_impl.hullVertices = nullptr;
    m_impl.hullTriangles = nullptr;
    m_impl.hullEdges = nullptr;
}

void SearchHull::formNormals() {
    m_normals.reserve(m_hull.getTriangles().size());
    for (const auto& [i0, i1, i2] : m_hull.getTriangles()) {
        const Vector p0 = hullPoint(m_impl, i0);
        m_normals.push_back((hullPoint(m_impl, i2) - p0) * (hullPoint(m_impl, i1) - p0));
    }
}

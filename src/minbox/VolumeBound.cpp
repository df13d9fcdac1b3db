#include "VolumeBound.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace {

/// Of the size: more than rounding takes from an extent of a box.
constexpr double kSlack = 1e-12;

/// Directions to the points of a grid around the origin, one of each two opposite ones.
std::vector<Vector> gridDirections() {
    constexpr int kReach = 2;
    std::vector<Vector> directions;
    for (int x = 0; x <= kReach; ++x) {
        for (int y = -kReach; y <= kReach; ++y) {
            for (int z = -kReach; z <= kReach; ++z) {
                const bool isFirstOfTwo = x > 0 || (x == 0 && (y > 0 || (y == 0 && z > 0)));
                const bool isDouble = x % 2 == 0 && y % 2 == 0 && z % 2 == 0;
                if (isFirstOfTwo && !isDouble) directions.emplace_back(x, y, z);
            }
        }
    }
    return directions;
}

/// The vertices that are farthest in some direction.
std::set<int> farthestVertices(const MinBoundingBoxImpl& impl) {
    std::set<int> found;
    for (const Vector& direction : gridDirections()) {
        int lowest = 0;
        int highest = 0;
        double low = hullPoint(impl, 0) | direction;
        double high = low;
        for (int i = 1; i < hullVertexCount(impl); ++i) {
            const double height = hullPoint(impl, i) | direction;
            if (height < low) {
                low = height;
                lowest = i;
            } else if (height > high) {
                high = height;
                highest = i;
            }
        }
        found.insert({lowest, highest});
    }
    return found;
}

}  // namespace

void VolumeBound::Columns::push_back(const Vector& v) {
    x.push_back(v.x);
    y.push_back(v.y);
    z.push_back(v.z);
}

VolumeBound::VolumeBound(const MinBoundingBoxImpl& impl, const SearchHull& hull) {
    std::vector<UPoint3<float>> corners;
    const std::vector<UPoint3<float>>& vertices = hull.hull().getVertices();
    for (const int vertex : farthestVertices(impl)) {
        corners.push_back(vertices[static_cast<std::size_t>(vertex)]);
        m_points.push_back(hullPoint(impl, vertex));
        const Vector d = hullPoint(impl, vertex) - hullPoint(impl, 0);
        m_size = std::max(m_size, 2.0 * d.GetLength());
    }
    takeTriangles(impl.unitLength,
                  gte::ConvexHull3(corners.data(), static_cast<int>(corners.size()), 3));
}

void VolumeBound::takeTriangles(double unitLength, const gte::ConvexHull3& polytope) {
    const auto corner = [&](int vertex) {
        const UPoint3<float>& p = polytope.getVertices()[static_cast<std::size_t>(vertex)];
        return Vector(static_cast<double>(p.x), static_cast<double>(p.y),
                      static_cast<double>(p.z)) *
               (1.0 / unitLength);
    };
    for (const auto& [a, b, c] : polytope.getTriangles()) {
        m_normals.push_back((corner(b) - corner(a)) * (corner(c) - corner(a)));
    }
}

double VolumeBound::along(const Vector& normal) const {
    const double length = normal.GetLength();
    double low = 0.0;
    double high = 0.0;
    for (std::size_t i = 0; i < m_points.x.size(); ++i) {
        const double height =
            m_points.x[i] * normal.x + m_points.y[i] * normal.y + m_points.z[i] * normal.z;
        low = i == 0 ? height : std::min(low, height);
        high = i == 0 ? height : std::max(high, height);
    }
    // Four sums side by side; which is added to which does not matter here.
    std::array<double, 4> sums{};
    for (std::size_t i = 0; i < m_normals.x.size(); ++i) {
        sums[i % 4] += std::fabs(m_normals.x[i] * normal.x + m_normals.y[i] * normal.y +
                                 m_normals.z[i] * normal.z);
    }
    const double area = ((sums[0] + sums[1]) + (sums[2] + sums[3])) / 4.0 / length;
    const double slack = kSlack * m_size;
    return std::max((high - low) / length - slack, 0.0) * std::max(area - slack * m_size, 0.0);
}

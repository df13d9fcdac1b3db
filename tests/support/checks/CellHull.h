#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include "TeskSDKCommonTools/ConvexHull3.h"
#include "shapes/BoxShapes.h"

// Hulls and their points in whole numbers of the hull's grid, where nothing rounds.

__extension__ using Int128 = __int128;

/// A point in steps of the grid: at most 2^26 + 1.
using Cell = std::array<std::int64_t, 3>;

inline bool isFinite(const UPoint3<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

inline Points finiteOnes(Points points) {
    std::erase_if(points, [](const UPoint3<float>& p) { return !isFinite(p); });
    return points;
}

/// The grid as the hull's header describes it: multiples of 2^-26 of the largest extent, that
/// rounded up to a power of two.
class CellGrid {
 public:
    explicit CellGrid(const Points& points) {
        double extent = 0.0;
        for (int axis = 0; axis < 3; ++axis) {
            double low = 1e300;
            double high = -1e300;
            for (const UPoint3<float>& p : points) {
                low = std::min(low, static_cast<double>(p[axis]));
                high = std::max(high, static_cast<double>(p[axis]));
            }
            extent = std::max(extent, high - low);
            m_low[static_cast<std::size_t>(axis)] = low;
        }
        double power = 1.0;
        while (power < extent) power *= 2.0;
        while (power / 2.0 >= extent && extent > 0.0) power /= 2.0;
        // One point stays as it is.
        m_step = extent > 0.0 ? power * 0x1p-26 : 0x1p-149;
    }

    Cell cellOf(const UPoint3<float>& p) const {
        Cell cell;
        for (int axis = 0; axis < 3; ++axis) {
            const auto k = static_cast<std::size_t>(axis);
            const auto steps = [&](double c) { return std::floor(c / m_step + 0.5); };
            cell[k] =
                static_cast<std::int64_t>(steps(static_cast<double>(p[axis])) - steps(m_low[k]));
        }
        return cell;
    }

    /// Whether rounding to the grid leaves a point where it is.
    bool isOnGrid(const UPoint3<float>& p) const {
        for (int axis = 0; axis < 3; ++axis) {
            const double steps = static_cast<double>(p[axis]) / m_step;
            if (std::floor(steps) != steps) return false;
        }
        return true;
    }

 private:
    std::array<double, 3> m_low{};
    double m_step = 1.0;
};

/// Differences of cells stay below 2^27, normals below 2^55, products of two normals below 2^112.
using Wide = std::array<Int128, 3>;

inline Wide minus(const Cell& a, const Cell& b) {
    return {Int128{a[0]} - b[0], Int128{a[1]} - b[1], Int128{a[2]} - b[2]};
}

inline Wide cross(const Wide& u, const Wide& v) {
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

inline Int128 dot(const Wide& u, const Wide& v) {
    return u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
}

inline bool isZero(const Wide& v) {
    return v[0] == 0 && v[1] == 0 && v[2] == 0;
}

inline bool pointTheSameWay(const Wide& u, const Wide& v) {
    return isZero(cross(u, v)) && dot(u, v) > 0;
}

inline bool pointOppositeWays(const Wide& u, const Wide& v) {
    return isZero(cross(u, v)) && dot(u, v) < 0;
}

/// What points in ascending order span.
inline int spanOf(const std::vector<Cell>& points) {
    if (points.size() < 2) return static_cast<int>(points.size()) - 1;
    const Wide line = minus(points.back(), points.front());
    Wide normal{};
    for (const Cell& p : points) {
        if (isZero(normal)) normal = cross(line, minus(p, points.front()));
    }
    if (isZero(normal)) return 1;
    const auto isOff = [&](const Cell& p) { return dot(normal, minus(p, points.front())) != 0; };
    return std::any_of(points.begin(), points.end(), isOff) ? 3 : 2;
}

/// A hull and its points in whole numbers, each point once, in ascending order.
struct CellHull {
    CellHull(const gte::ConvexHull3& hullOfPoints, const Points& allPoints)
        : hull(hullOfPoints), grid(finiteOnes(allPoints)) {
        for (const UPoint3<float>& p : hull.getVertices()) vertices.push_back(grid.cellOf(p));
        for (const UPoint3<float>& p : finiteOnes(allPoints)) points.push_back(grid.cellOf(p));
        std::sort(points.begin(), points.end());
        points.erase(std::unique(points.begin(), points.end()), points.end());
    }

    const Cell& vertex(int v) const { return vertices[static_cast<std::size_t>(v)]; }
    const std::array<int, 3>& triangle(int t) const {
        return hull.getTriangles()[static_cast<std::size_t>(t)];
    }
    Wide normal(int t) const {
        const auto& [a, b, c] = triangle(t);
        return cross(minus(vertex(b), vertex(a)), minus(vertex(c), vertex(a)));
    }
    int triangleCount() const { return static_cast<int>(hull.getTriangles().size()); }

    const gte::ConvexHull3& hull;
    CellGrid grid;
    std::vector<Cell> vertices;
    std::vector<Cell> points;
};

#include "plate/Footprints.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace App {

namespace {

using Point = UPoint2<double>;

double crossOf(const Point& a, const Point& b, const Point& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// Leaves out what lies within the octagon of the points that are farthest along the axes and the
/// diagonals; of most parts, that is nearly everything.
std::vector<Point> outerPoints(const std::vector<Point>& points) {
    constexpr std::array<Point, 8> kWays = {Point{1, 0},  Point{1, 1},  Point{0, 1},
                                            Point{-1, 1}, Point{-1, 0}, Point{-1, -1},
                                            Point{0, -1}, Point{1, -1}};
    std::array<Point, 8> corners;
    for (std::size_t i = 0; i < kWays.size(); ++i) {
        const auto along = [&](const Point& p) { return p.x * kWays[i].x + p.y * kWays[i].y; };
        corners[i] =
            *std::max_element(points.begin(), points.end(),
                              [&](const Point& a, const Point& b) { return along(a) < along(b); });
    }
    std::vector<Point> outer(corners.begin(), corners.end());
    for (const Point& p : points) {
        bool isInside = true;
        for (std::size_t i = 0; i < corners.size() && isInside; ++i) {
            const Point& next = corners[(i + 1) % corners.size()];
            const bool isEdge = corners[i].x != next.x || corners[i].y != next.y;
            isInside = !isEdge || crossOf(corners[i], next, p) > 0.0;
        }
        if (!isInside) outer.push_back(p);
    }
    return outer;
}

/// The least overlap of two polygons' shadows on the normals of one's edges; at most `least`.
double overlapAlongNormals(const Footprint& edges, const Footprint& a, const Footprint& b,
                           double least) {
    for (std::size_t i = 0; i < edges.size(); ++i) {
        const Point& from = edges[i];
        const Point& to = edges[(i + 1) % edges.size()];
        const Point way{to.x - from.x, to.y - from.y};
        const double lengthSq = way.x * way.x + way.y * way.y;
        const double length = std::sqrt(lengthSq);
        if (!(length > 0.0)) continue;
        const Point normal{way.y / length, -way.x / length};
        const auto shadowOf = [&](const Footprint& polygon) {
            double low = std::numeric_limits<double>::infinity();
            double high = -low;
            for (const Point& p : polygon) {
                const double along = p.x * normal.x + p.y * normal.y;
                low = std::min(low, along);
                high = std::max(high, along);
            }
            return std::array{low, high};
        };
        const auto [lowA, highA] = shadowOf(a);
        const auto [lowB, highB] = shadowOf(b);
        least = std::min(least, std::min(highA - lowB, highB - lowA));
    }
    return least;
}

}  // namespace

/// The monotone chain: the lower hull from left to right, then the upper one back.
Footprint footprintOf(const Tesk::PartMesh& mesh, const UMatrix4<double>& toPlate) {
    std::vector<Point> points;
    points.reserve(mesh.positions.size());
    for (const Tesk::PartPoint& p : mesh.positions) {
        const UPoint3<double> q =
            UPoint3<double>(static_cast<double>(p.x), static_cast<double>(p.y),
                            static_cast<double>(p.z)) *
            toPlate;
        points.push_back({q.x, q.y});
    }
    points = outerPoints(points);
    const auto isBefore = [](const Point& a, const Point& b) {
        return a.x != b.x ? a.x < b.x : a.y < b.y;
    };
    std::sort(points.begin(), points.end(), isBefore);
    Footprint hull;
    std::size_t fixed = 0;
    const auto append = [&](const Point& p) {
        while (hull.size() >= fixed + 2 &&
               !(crossOf(hull[hull.size() - 2], hull.back(), p) > 0.0)) {
            hull.pop_back();
        }
        hull.push_back(p);
    };
    for (const Point& p : points) append(p);
    hull.pop_back();
    fixed = hull.size();
    for (auto p = points.rbegin(); p != points.rend(); ++p) append(*p);
    hull.pop_back();
    return hull;
}

double overlapOf(const Footprint& a, const Footprint& b) {
    constexpr double kNone = std::numeric_limits<double>::infinity();
    const double least = overlapAlongNormals(b, a, b, overlapAlongNormals(a, a, b, kNone));
    return least == kNone ? 0.0 : std::max(least, 0.0);
}

}  // namespace App

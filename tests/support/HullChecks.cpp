#include "HullChecks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>

namespace {

__extension__ using Int128 = __int128;

/// A point in steps of the grid.
using Cell = std::array<std::int64_t, 3>;

bool isFinite(const UPoint3<float>& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

/// The grid as the hull's header describes it: multiples of 2^-26 of the largest extent, that
/// rounded up to a power of two.
class Grid {
 public:
    explicit Grid(const Points& points) {
        double extent = 0.0;
        for (int axis = 0; axis < 3; ++axis) {
            double low = 1e300;
            double high = -1e300;
            for (const UPoint3<float>& p : points) {
                if (!isFinite(p)) continue;
                low = std::min(low, static_cast<double>(p[axis]));
                high = std::max(high, static_cast<double>(p[axis]));
            }
            extent = std::max(extent, high - low);
            m_low[static_cast<std::size_t>(axis)] = low;
        }
        double power = 1.0;
        while (power < extent) power *= 2.0;
        while (power / 2.0 >= extent && extent > 0.0) power /= 2.0;
        m_step = power * 0x1p-26;
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

 private:
    std::array<double, 3> m_low{};
    double m_step = 1.0;
};

using Wide = std::array<Int128, 3>;

Wide minus(const Cell& a, const Cell& b) {
    return {Int128{a[0]} - b[0], Int128{a[1]} - b[1], Int128{a[2]} - b[2]};
}

Wide cross(const Wide& u, const Wide& v) {
    return {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
}

Int128 dot(const Wide& u, const Wide& v) {
    return u[0] * v[0] + u[1] * v[1] + u[2] * v[2];
}

bool isZero(const Wide& v) {
    return v[0] == 0 && v[1] == 0 && v[2] == 0;
}

/// A solid or flat hull and its points in whole numbers.
struct Subject {
    const gte::ConvexHull3& hull;
    std::vector<Cell> vertices;
    std::set<Cell> points;

    const Cell& corner(std::size_t triangle, std::size_t k) const {
        return vertices[static_cast<std::size_t>(hull.getTriangles()[triangle][k])];
    }
    Wide normal(std::size_t t) const {
        return cross(minus(corner(t, 1), corner(t, 0)), minus(corner(t, 2), corner(t, 0)));
    }
};

std::string faultOfVertices(const Subject& s) {
    for (std::size_t i = 0; i < s.vertices.size(); ++i) {
        if (s.points.count(s.vertices[i]) == 0) return "a vertex is none of the points";
        if (i > 0 && !(s.vertices[i - 1] < s.vertices[i])) return "vertices are out of order";
    }
    return "";
}

std::string faultOfTriangles(const Subject& s) {
    for (std::size_t t = 0; t < s.hull.getTriangles().size(); ++t) {
        const Wide normal = s.normal(t);
        if (isZero(normal)) return "a triangle has no area";
        for (const Cell& p : s.points) {
            if (dot(normal, minus(p, s.corner(t, 0))) > 0) return "a point lies outside";
        }
    }
    return "";
}

std::string faultOfEdges(const Subject& s) {
    // Flat hulls have each diagonal twice: once on either side.
    std::map<std::pair<int, int>, int> sides;
    const auto& triangles = s.hull.getTriangles();
    for (const auto& t : triangles) {
        for (std::size_t k = 0; k < 3; ++k) ++sides[{t[k], t[(k + 1) % 3]}];
    }
    const int allowed = s.hull.getDimension() == 2 ? 2 : 1;
    for (const auto& [side, count] : sides) {
        if (count > allowed) return "an edge has too many triangles";
        const auto back = sides.find({side.second, side.first});
        if (back == sides.end() || back->second != count) return "the surface is open";
    }
    if (s.hull.getHullEdges().size() * 2 != triangles.size() * 3) return "E is not 3F/2";
    const auto runs = [&](int face, int from, int to) {
        const auto& t = triangles[static_cast<std::size_t>(face)];
        for (std::size_t k = 0; k < 3; ++k) {
            if (t[k] == from && t[(k + 1) % 3] == to) return true;
        }
        return false;
    };
    std::pair<int, int> before(-1, -1);
    for (const gte::HullEdge& edge : s.hull.getHullEdges()) {
        if (edge.a >= edge.b) return "an edge is listed upside down";
        if (!runs(edge.f0, edge.a, edge.b) || !runs(edge.f1, edge.b, edge.a)) {
            return "an edge's triangles do not run along it";
        }
        const std::pair now(edge.a, edge.b);
        if (now < before || (allowed == 1 && now == before)) return "edges are out of order";
        before = now;
    }
    const std::size_t euler = s.vertices.size() + triangles.size() - s.hull.getHullEdges().size();
    return euler == 2 ? "" : "the Euler number is not 2";
}

/// The distinct directions of the normals around each vertex: an extreme point of a solid has at
/// least three, of a flat polygon its two neighbours are not in line with it.
std::string faultOfCorners(const Subject& s) {
    std::vector<std::vector<Wide>> normals(s.vertices.size());
    std::vector<std::set<int>> neighbours(s.vertices.size());
    const auto& triangles = s.hull.getTriangles();
    for (std::size_t t = 0; t < triangles.size(); ++t) {
        for (std::size_t k = 0; k < 3; ++k) {
            const auto v = static_cast<std::size_t>(triangles[t][k]);
            normals[v].push_back(s.normal(t));
            neighbours[v].insert({triangles[t][(k + 1) % 3], triangles[t][(k + 2) % 3]});
        }
    }
    for (std::size_t v = 0; v < s.vertices.size(); ++v) {
        if (s.hull.getDimension() == 3) {
            // Three normals that do not lie in one plane.
            bool isCorner = false;
            for (std::size_t i = 1; i < normals[v].size() && !isCorner; ++i) {
                // Scaled down: only whether the product vanishes counts, and it must not overflow.
                const Wide across = cross(normals[v][0], normals[v][i]);
                if (isZero(across)) continue;
                for (const Wide& third : normals[v]) {
                    const long double height =
                        static_cast<long double>(across[0]) * static_cast<long double>(third[0]) +
                        static_cast<long double>(across[1]) * static_cast<long double>(third[1]) +
                        static_cast<long double>(across[2]) * static_cast<long double>(third[2]);
                    const long double size = std::fabs(static_cast<long double>(across[0]) *
                                                       static_cast<long double>(third[0])) +
                                             std::fabs(static_cast<long double>(across[1]) *
                                                       static_cast<long double>(third[1])) +
                                             std::fabs(static_cast<long double>(across[2]) *
                                                       static_cast<long double>(third[2]));
                    isCorner = isCorner || std::fabs(height) > 1e-17L * size;
                }
            }
            if (!isCorner) return "a vertex is no corner";
        } else {
            int beside = 0;
            for (const int i : neighbours[v]) {
                for (const int j : neighbours[v]) {
                    const auto a = minus(s.vertices[static_cast<std::size_t>(i)], s.vertices[v]);
                    const auto b = minus(s.vertices[static_cast<std::size_t>(j)], s.vertices[v]);
                    beside += isZero(cross(a, b)) && dot(a, b) < 0 ? 1 : 0;
                }
            }
            if (beside > 0) return "a vertex lies inside an edge";
        }
    }
    return "";
}

}  // namespace

std::string faultOf(const gte::ConvexHull3& hull, const Points& points) {
    const Grid grid(points);
    Subject subject{hull, {}, {}};
    for (const UPoint3<float>& p : hull.getVertices()) subject.vertices.push_back(grid.cellOf(p));
    for (const UPoint3<float>& p : points) {
        if (isFinite(p)) subject.points.insert(grid.cellOf(p));
    }
    if (hull.getDimension() < 2) {
        if (!hull.getTriangles().empty() || !hull.getHullEdges().empty()) return "it has faces";
        const int count = hull.getDimension() + 1;
        // On a line the ends are the lowest and the highest of the points.
        if (count > 0 && (subject.vertices.front() != *subject.points.begin() ||
                          subject.vertices.back() != *subject.points.rbegin())) {
            return "an end is not a vertex";
        }
        return static_cast<int>(hull.getVertices().size()) == count ? faultOfVertices(subject)
                                                                    : "wrong number of vertices";
    }
    for (const auto check : {faultOfVertices, faultOfTriangles, faultOfEdges, faultOfCorners}) {
        const std::string fault = check(subject);
        if (!fault.empty()) return fault;
    }
    return "";
}

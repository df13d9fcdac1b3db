#include "plate/Bodies.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>

#include "Failure.h"
#include "TeskDataBasic/UBox3.h"

namespace App {

namespace {

using Point = UPoint3<double>;
using Box = UBox3<double>;
using Index = std::size_t;

constexpr Index kMostBodies = 1000;
constexpr Index kMostShells = 20000;

/// Disjoint sets of numbers, each known by its least.
class Sets {
 public:
    explicit Sets(Index count) : m_parent(count) {
        std::iota(m_parent.begin(), m_parent.end(), Index{0});
    }

    Index find(Index i) {
        while (m_parent[i] != i) i = m_parent[i] = m_parent[m_parent[i]];
        return i;
    }

    void join(Index a, Index b) {
        a = find(a);
        b = find(b);
        m_parent[std::max(a, b)] = std::min(a, b);
    }

 private:
    std::vector<Index> m_parent;
};

/// Triangles that are connected.
struct Shell {
    std::vector<Index> triangles;
    Box box;
    Point first;  ///< its first vertex
};

Point pointAt(const Tesk::PartMesh& mesh, std::int32_t vertex) {
    const Tesk::PartPoint& p = mesh.positions[static_cast<Index>(vertex)];
    return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}

[[noreturn]] void refuseSoMany(Index count, const char* what) {
    throw InputFailure(
        fmt::format("falls into {} bodies{}, too many to be taken as parts; try it without --split",
                    count, what));
}

std::vector<Shell> shellsOf(const Tesk::PartMesh& mesh) {
    Sets sets(mesh.positions.size());
    for (const auto& corners : mesh.triangles) {
        sets.join(static_cast<Index>(corners[0]), static_cast<Index>(corners[1]));
        sets.join(static_cast<Index>(corners[0]), static_cast<Index>(corners[2]));
    }
    constexpr Index kNone = ~Index{0};
    std::vector<Index> shellOf(mesh.positions.size(), kNone);
    std::vector<Shell> shells;
    for (Index t = 0; t < mesh.triangles.size(); ++t) {
        const auto& corners = mesh.triangles[t];
        Index& shell = shellOf[sets.find(static_cast<Index>(corners[0]))];
        if (shell == kNone) {
            shell = shells.size();
            shells.emplace_back();
            shells.back().first = pointAt(mesh, corners[0]);
            if (shells.size() > kMostShells) refuseSoMany(shells.size(), " and more");
        }
        shells[shell].triangles.push_back(t);
        for (const std::int32_t corner : corners) shells[shell].box.Extend(pointAt(mesh, corner));
    }
    return shells;
}

bool isWithin(const Box& inner, const Box& outer) {
    return inner.MinX() >= outer.MinX() && inner.MaxX() <= outer.MaxX() &&
           inner.MinY() >= outer.MinY() && inner.MaxY() <= outer.MaxY() &&
           inner.MinZ() >= outer.MinZ() && inner.MaxZ() <= outer.MaxZ();
}

/// On which side of the line from a to b a point lies, seen from above. A point on it counts as
/// moved a little along x and much less along y, so that of two triangles that share an edge one
/// has it.
int sideOf(const Point& a, const Point& b, const Point& p) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double cross = dx * (p.y - a.y) - dy * (p.x - a.x);
    if (cross != 0.0) return cross > 0.0 ? 1 : -1;
    if (dy != 0.0) return dy < 0.0 ? 1 : -1;
    return dx > 0.0 ? 1 : (dx < 0.0 ? -1 : 0);
}

/// How often a triangle covers a point from above: 1 or −1, by the way it faces, or 0.
int coverOf(const std::array<Point, 3>& t, const Point& p) {
    const int side = sideOf(t[0], t[1], p);
    if (side == 0 || side != sideOf(t[1], t[2], p) || side != sideOf(t[2], t[0], p)) return 0;
    const UVector3<double> normal = (t[1] - t[0]) * (t[2] - t[0]);
    const double above = (normal | (t[0] - p)) * (normal.z > 0.0 ? 1.0 : -1.0);
    return above > 0.0 ? side : 0;
}

/// How often a shell's surface winds about each point. Points are in ascending order of x.
std::vector<int> windings(const Tesk::PartMesh& mesh, const Shell& shell,
                          const std::vector<Point>& points) {
    std::vector<int> sums(points.size());
    for (const Index t : shell.triangles) {
        std::array<Point, 3> corners;
        for (Index i = 0; i < 3; ++i) corners[i] = pointAt(mesh, mesh.triangles[t][i]);
        const auto [low, high] = std::minmax({corners[0].x, corners[1].x, corners[2].x});
        auto point = std::lower_bound(points.begin(), points.end(), low,
                                      [](const Point& p, double x) { return p.x < x; });
        for (; point != points.end() && point->x <= high; ++point) {
            sums[static_cast<Index>(point - points.begin())] += coverOf(corners, *point);
        }
    }
    return sums;
}

/// Joins a shell with those that lie in it.
void joinWithInner(const Tesk::PartMesh& mesh, const std::vector<Shell>& shells, Index outer,
                   Sets& bodies) {
    std::vector<Index> inner;
    for (Index i = 0; i < shells.size(); ++i) {
        if (i != outer && isWithin(shells[i].box, shells[outer].box)) inner.push_back(i);
    }
    if (inner.empty()) return;
    std::sort(inner.begin(), inner.end(),
              [&](Index a, Index b) { return shells[a].first.x < shells[b].first.x; });
    std::vector<Point> points;
    for (const Index i : inner) points.push_back(shells[i].first);
    const std::vector<int> sums = windings(mesh, shells[outer], points);
    for (Index i = 0; i < inner.size(); ++i) {
        if (sums[i] != 0) bodies.join(inner[i], outer);
    }
}

Tesk::PartMesh meshOf(const Tesk::PartMesh& whole, const std::vector<Index>& triangles,
                      std::vector<std::int32_t>& vertexOf) {
    Tesk::PartMesh mesh;
    for (const Index t : triangles) {
        std::array<std::int32_t, 3> corners = whole.triangles[t];
        for (std::int32_t& corner : corners) {
            std::int32_t& vertex = vertexOf[static_cast<Index>(corner)];
            if (vertex < 0) {
                vertex = static_cast<std::int32_t>(mesh.positions.size());
                mesh.positions.push_back(whole.positions[static_cast<Index>(corner)]);
            }
            corner = vertex;
        }
        mesh.triangles.push_back(corners);
    }
    return mesh;
}

}  // namespace

std::vector<Tesk::PartMesh> bodiesOf(const Tesk::PartMesh& mesh) {
    const std::vector<Shell> shells = shellsOf(mesh);
    Sets sets(shells.size());
    for (Index i = 0; i < shells.size(); ++i) joinWithInner(mesh, shells, i, sets);
    std::vector<std::vector<Index>> bodies(shells.size());
    for (Index i = 0; i < shells.size(); ++i) {
        auto& triangles = bodies[sets.find(i)];
        triangles.insert(triangles.end(), shells[i].triangles.begin(), shells[i].triangles.end());
    }
    std::erase_if(bodies, [](const auto& triangles) { return triangles.empty(); });
    if (bodies.size() > kMostBodies) refuseSoMany(bodies.size(), "");
    for (auto& triangles : bodies) std::sort(triangles.begin(), triangles.end());
    std::sort(bodies.begin(), bodies.end());
    // Bodies share no vertex, so that one table serves all.
    std::vector<std::int32_t> vertexOf(mesh.positions.size(), -1);
    std::vector<Tesk::PartMesh> meshes;
    for (const auto& triangles : bodies) meshes.push_back(meshOf(mesh, triangles, vertexOf));
    return meshes;
}

}  // namespace App

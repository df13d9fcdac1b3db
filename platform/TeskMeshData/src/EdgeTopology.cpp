#include "EdgeTopology.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#ifdef _OPENMP
#include <omp.h>
#endif

namespace {

using Mesh = UMesh<float>;
using Triangle = UTriangle<float>;
using Corners = std::array<std::int32_t, 3>;

/// One side of a triangle, filed under the lower of its two vertices: the upper vertex, the
/// triangle and its edge, and whether it runs upward, packed so that the number's order is that of
/// these.
class HalfEdge {
 public:
    HalfEdge() = default;
    HalfEdge(std::int32_t upperVertex, std::int32_t triangle, std::uint32_t edge, bool runsUpward)
        : m_packed((static_cast<std::uint64_t>(upperVertex) << 32) |
                   (static_cast<std::uint32_t>(triangle) * 6 + edge * 2 + (runsUpward ? 1 : 0))) {}

    std::uint64_t upperVertex() const { return m_packed >> 32; }
    std::int32_t triangle() const { return static_cast<std::int32_t>(low() / 6); }
    int edge() const { return static_cast<int>(low() / 2 % 3); }
    bool runsUpward() const { return (low() & 1) != 0; }

    friend bool operator<(const HalfEdge& a, const HalfEdge& b) { return a.m_packed < b.m_packed; }

 private:
    std::uint32_t low() const { return static_cast<std::uint32_t>(m_packed); }

    std::uint64_t m_packed = 0;
};

bool isCollapsed(const Corners& c) {
    return c[0] == c[1] || c[1] == c[2] || c[2] == c[0];
}

std::vector<Corners> cornersOf(const Mesh& mesh) {
    std::vector<Corners> corners(static_cast<std::size_t>(mesh.TriangleCount()));
#pragma omp parallel for schedule(static)
    for (std::int32_t t = 0; t < mesh.TriangleCount(); ++t) {
        const Triangle& triangle = *mesh.Triangle(t);
        corners[static_cast<std::size_t>(t)] = {triangle.V(0)->Index(), triangle.V(1)->Index(),
                                                triangle.V(2)->Index()};
    }
    return corners;
}

/// Without OpenMP, a host that builds this for itself gets it on one thread.
int maxThreads() {
#ifdef _OPENMP
    return omp_get_max_threads();
#else
    return 1;
#endif
}

/// A thread's share of the vertices. Every thread reads all triangles and files those half-edges
/// whose lower vertex is its own, so that no two write to the same place.
struct VertexRange {
    std::int32_t first = 0;
    std::int32_t end = 0;

    bool holds(std::int32_t vertex) const { return first <= vertex && vertex < end; }
};

std::vector<VertexRange> splitVertices(std::int32_t vertices) {
    // More ranges than threads would read the triangles more often; the shares are even enough.
    const std::int64_t shares = std::clamp(maxThreads(), 1, 256);
    std::vector<VertexRange> ranges;
    for (std::int64_t i = 0; i < shares; ++i) {
        ranges.push_back({static_cast<std::int32_t>(vertices * i / shares),
                          static_cast<std::int32_t>(vertices * (i + 1) / shares)});
    }
    return ranges;
}

/// Calls visit(lower vertex, HalfEdge) for those of a range, by ascending triangle.
template <class Visit>
void forEachHalfEdge(const std::vector<Corners>& triangles, const VertexRange& range, Visit visit) {
    for (std::size_t t = 0; t < triangles.size(); ++t) {
        const Corners& c = triangles[t];
        if (isCollapsed(c)) continue;
        for (std::uint32_t k = 0; k < 3; ++k) {
            const std::int32_t from = c[k];
            const std::int32_t to = c[k == 2 ? 0 : k + 1];
            const std::int32_t lower = std::min(from, to);
            if (!range.holds(lower)) continue;
            visit(static_cast<std::size_t>(lower),
                  HalfEdge(std::max(from, to), static_cast<std::int32_t>(t), k, from < to));
        }
    }
}

/// Half-edges of all triangles, grouped by their lower vertex.
struct HalfEdgeGroups {
    std::vector<std::uint32_t> ends;  ///< where each vertex's group ends, and the next begins
    std::vector<HalfEdge> halfEdges;

    HalfEdge* begin(std::int32_t vertex) {
        return halfEdges.data() + (vertex == 0 ? 0 : ends[static_cast<std::size_t>(vertex) - 1]);
    }
    HalfEdge* end(std::int32_t vertex) {
        return halfEdges.data() + ends[static_cast<std::size_t>(vertex)];
    }
};

HalfEdgeGroups groupHalfEdges(const std::vector<Corners>& triangles, std::int32_t vertices,
                              const std::vector<VertexRange>& ranges) {
    HalfEdgeGroups groups;
    std::vector<std::uint32_t>& ends = groups.ends;
    ends.assign(static_cast<std::size_t>(vertices), 0);
    const auto shares = static_cast<std::int32_t>(ranges.size());
#pragma omp parallel for schedule(static, 1)
    for (std::int32_t i = 0; i < shares; ++i) {
        forEachHalfEdge(triangles, ranges[static_cast<std::size_t>(i)],
                        [&](std::size_t lower, const HalfEdge&) { ++ends[lower]; });
    }
    // Where each group begins; filling it moves that to its end.
    std::uint32_t total = 0;
    for (std::uint32_t& end : ends) {
        const std::uint32_t count = end;
        end = total;
        total += count;
    }
    groups.halfEdges.resize(total);
#pragma omp parallel for schedule(static, 1)
    for (std::int32_t i = 0; i < shares; ++i) {
        forEachHalfEdge(triangles, ranges[static_cast<std::size_t>(i)],
                        [&](std::size_t lower, const HalfEdge& halfEdge) {
                            groups.halfEdges[ends[lower]++] = halfEdge;
                        });
    }
    return groups;
}

/// By insertion, which suits the handful of edges at a vertex.
void sortFew(HalfEdge* begin, HalfEdge* end) {
    constexpr std::ptrdiff_t kFew = 24;
    if (end - begin > kFew) {
        std::sort(begin, end);
        return;
    }
    for (HalfEdge* next = begin; next < end; ++next) {
        const HalfEdge moved = *next;
        HalfEdge* place = next;
        for (; place > begin && moved < place[-1]; --place) *place = place[-1];
        *place = moved;
    }
}

void countEdge(const HalfEdge* begin, std::ptrdiff_t uses, TopologyCounts& counts) {
    if (uses == 1) {
        ++counts.openEdges;
    } else if (uses > 2) {
        ++counts.nonManifoldEdges;
    } else if (begin[0].runsUpward() == begin[1].runsUpward()) {
        ++counts.inconsistentEdges;
    }
}

void linkEdge(Mesh& mesh, const HalfEdge* begin, std::ptrdiff_t uses) {
    for (std::ptrdiff_t i = 0; i < uses; ++i) {
        std::int32_t neighbour = Triangle::kNonManifoldEdge;
        if (uses == 1) neighbour = Triangle::kOpenEdge;
        if (uses == 2) neighbour = begin[1 - i].triangle();
        mesh.Triangle(begin[i].triangle())->SetNeighbour(begin[i].edge(), neighbour);
    }
}

/// The edges above one vertex.
void finishVertex(Mesh& mesh, HalfEdge* edge, HalfEdge* end, bool setNeighbours,
                  TopologyCounts& counts) {
    sortFew(edge, end);
    while (edge != end) {
        const HalfEdge* next = edge + 1;
        while (next != end && next->upperVertex() == edge->upperVertex()) ++next;
        countEdge(edge, next - edge, counts);
        if (setNeighbours) linkEdge(mesh, edge, next - edge);
        edge += next - edge;
    }
}

/// Collapsed triangles have no edges; all others get a neighbour, or none, at each.
void markCollapsed(Mesh& mesh, const std::vector<Corners>& triangles) {
    for (std::size_t t = 0; t < triangles.size(); ++t) {
        if (!isCollapsed(triangles[t])) continue;
        for (int k = 0; k < 3; ++k) {
            mesh.Triangle(static_cast<std::int32_t>(t))->SetNeighbour(k, Triangle::kOpenEdge);
        }
    }
}

}  // namespace

TopologyCounts buildEdgeTopology(Mesh& mesh, bool setNeighbours) {
    const std::vector<Corners> triangles = cornersOf(mesh);
    const std::vector<VertexRange> ranges = splitVertices(mesh.VertexCount());
    HalfEdgeGroups groups = groupHalfEdges(triangles, mesh.VertexCount(), ranges);
    std::int32_t open = 0;
    std::int32_t nonManifold = 0;
    std::int32_t inconsistent = 0;
#pragma omp parallel for schedule(static) reduction(+ : open, nonManifold, inconsistent)
    for (std::int32_t v = 0; v < mesh.VertexCount(); ++v) {
        TopologyCounts counts;
        finishVertex(mesh, groups.begin(v), groups.end(v), setNeighbours, counts);
        open += counts.openEdges;
        nonManifold += counts.nonManifoldEdges;
        inconsistent += counts.inconsistentEdges;
    }
    if (setNeighbours) markCollapsed(mesh, triangles);
    return {open, nonManifold, inconsistent};
}

#include "EdgeTopology.h"

#include <algorithm>
#include <vector>

namespace {

using Mesh = UMesh<float>;
using Triangle = UTriangle<float>;

/// One side of a triangle, filed under the lower of its two vertices.
struct HalfEdge {
    std::int32_t upperVertex;
    std::uint32_t code;  ///< (triangle * 3 + edge), which tells the direction too

    friend bool operator<(const HalfEdge& a, const HalfEdge& b) {
        return a.upperVertex != b.upperVertex ? a.upperVertex < b.upperVertex : a.code < b.code;
    }
};

std::int32_t triangleOf(const HalfEdge& h) {
    return static_cast<std::int32_t>(h.code / 3);
}
int edgeOf(const HalfEdge& h) {
    return static_cast<int>(h.code % 3);
}

std::array<std::int32_t, 3> cornersOf(const Triangle& triangle) {
    return {triangle.V(0)->Index(), triangle.V(1)->Index(), triangle.V(2)->Index()};
}

bool isCollapsed(const std::array<std::int32_t, 3>& c) {
    return c[0] == c[1] || c[1] == c[2] || c[2] == c[0];
}

/// Half-edges of all triangles, grouped by their lower vertex: group v is [first[v], first[v+1]).
struct HalfEdgeGroups {
    std::vector<std::uint32_t> first;
    std::vector<HalfEdge> halfEdges;
};

template <class Visit>
void forEachHalfEdge(const Mesh& mesh, Visit visit) {
    for (std::int32_t t = 0; t < mesh.TriangleCount(); ++t) {
        const auto corners = cornersOf(*mesh.Triangle(t));
        if (isCollapsed(corners)) continue;
        for (std::uint32_t k = 0; k < 3; ++k) {
            const auto [lower, upper] = std::minmax(corners[k], corners[(k + 1) % 3]);
            visit(static_cast<std::size_t>(lower), upper, static_cast<std::uint32_t>(t) * 3 + k);
        }
    }
}

HalfEdgeGroups groupHalfEdges(const Mesh& mesh) {
    HalfEdgeGroups groups;
    // Counts are kept two places up: after the running sum, first[v + 1] is where group v begins,
    // and filling the groups moves it to where group v ends.
    groups.first.assign(static_cast<std::size_t>(mesh.VertexCount()) + 2, 0);
    forEachHalfEdge(
        mesh, [&](std::size_t lower, std::int32_t, std::uint32_t) { ++groups.first[lower + 2]; });
    for (std::size_t v = 2; v < groups.first.size(); ++v) groups.first[v] += groups.first[v - 1];
    groups.halfEdges.resize(groups.first.back());
    forEachHalfEdge(mesh, [&](std::size_t lower, std::int32_t upper, std::uint32_t code) {
        groups.halfEdges[groups.first[lower + 1]++] = {upper, code};
    });
    return groups;
}

bool runsUpward(const Mesh& mesh, const HalfEdge& h) {
    const Triangle& triangle = *mesh.Triangle(triangleOf(h));
    return triangle.V((edgeOf(h) + 1) % 3)->Index() == h.upperVertex;
}

void countEdge(const Mesh& mesh, const HalfEdge* begin, std::ptrdiff_t uses,
               TopologyCounts& counts) {
    if (uses == 1) {
        ++counts.openEdges;
    } else if (uses > 2) {
        ++counts.nonManifoldEdges;
    } else if (runsUpward(mesh, begin[0]) == runsUpward(mesh, begin[1])) {
        ++counts.inconsistentEdges;
    }
}

void linkEdge(Mesh& mesh, const HalfEdge* begin, std::ptrdiff_t uses) {
    for (std::ptrdiff_t i = 0; i < uses; ++i) {
        std::int32_t neighbour = Triangle::kNonManifoldEdge;
        if (uses == 1) neighbour = Triangle::kOpenEdge;
        if (uses == 2) neighbour = triangleOf(begin[1 - i]);
        mesh.Triangle(triangleOf(begin[i]))->SetNeighbour(edgeOf(begin[i]), neighbour);
    }
}

void markOpen(Mesh& mesh) {
    for (std::int32_t t = 0; t < mesh.TriangleCount(); ++t) {
        for (int k = 0; k < 3; ++k) mesh.Triangle(t)->SetNeighbour(k, Triangle::kOpenEdge);
    }
}

}  // namespace

TopologyCounts buildEdgeTopology(Mesh& mesh, bool setNeighbours) {
    if (setNeighbours) markOpen(mesh);
    HalfEdgeGroups groups = groupHalfEdges(mesh);
    TopologyCounts counts;
    for (std::size_t v = 0; v + 2 < groups.first.size(); ++v) {
        HalfEdge* const end = groups.halfEdges.data() + groups.first[v + 1];
        HalfEdge* edge = groups.halfEdges.data() + groups.first[v];
        std::sort(edge, end);
        while (edge != end) {
            const HalfEdge* const next = std::find_if(
                edge, end, [&](const HalfEdge& h) { return h.upperVertex != edge->upperVertex; });
            countEdge(mesh, edge, next - edge, counts);
            if (setNeighbours) linkEdge(mesh, edge, next - edge);
            edge += next - edge;
        }
    }
    return counts;
}

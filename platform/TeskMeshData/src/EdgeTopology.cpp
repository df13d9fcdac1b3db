#include "EdgeTopology.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <mutex>
#include <vector>

#include "TeskThreads/RawVector.h"
#include "TeskThreads/Team.h"

namespace Tesk::mesh {
namespace {

using Mesh = UMesh<float>;
using Triangle = UTriangle<float>;
using Corners = std::array<std::int32_t, 3>;

/// One side of a triangle, stored with the lower of its two vertices: its upper vertex, triangle
/// and edge, and whether it runs upward. Packed into one number, which orders them in this
/// sequence.
class HalfEdge {
 public:
    HalfEdge() = default;  // uninitialised: lists of them are filled in parallel
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

    std::uint64_t m_packed;
};

bool isCollapsed(const Corners& c) {
    return c[0] == c[1] || c[1] == c[2] || c[2] == c[0];
}

/// The number of triangles that a thread handles at a time.
constexpr std::int64_t kPiece = 4096;

/// Divides the vertices into at most 64 blocks of equal size, which is a power of two.
class VertexBlocks {
 public:
    explicit VertexBlocks(std::int32_t vertices)
        : m_shift(std::max(
              static_cast<int>(std::bit_width(static_cast<std::uint32_t>(vertices))) - kMostBits,
              0)),
          m_vertices(vertices) {}

    int count() const { return m_vertices == 0 ? 0 : blockOf(m_vertices - 1) + 1; }
    int blockOf(std::int32_t vertex) const { return vertex >> m_shift; }
    std::int32_t firstOf(int block) const {
        return static_cast<std::int32_t>(
            std::min(std::int64_t{block} << m_shift, std::int64_t{m_vertices}));
    }

 private:
    static constexpr int kMostBits = 6;

    int m_shift;
    std::int32_t m_vertices;
};

/// The corners of all triangles. For each piece of triangles, one bit per vertex block tells
/// whether the lower end of one of their edges lies there.
struct CornerLists {
    Tesk::RawVector<Corners> triangles;
    std::vector<std::uint64_t> blocks;
};

/// The corners of a triangle. A collapsed one has no edges, and so no neighbours.
Corners takeCorners(Triangle& triangle, bool setNeighbours) {
    const Corners c = {triangle.V(0)->Index(), triangle.V(1)->Index(), triangle.V(2)->Index()};
    if (setNeighbours && isCollapsed(c)) {
        for (int k = 0; k < 3; ++k) triangle.SetNeighbour(k, Triangle::kOpenEdge);
    }
    return c;
}

CornerLists cornersOf(Tesk::Team& team, Mesh& mesh, const VertexBlocks& blocks,
                      bool setNeighbours) {
    CornerLists lists;
    const std::int64_t count = mesh.TriangleCount();
    lists.triangles.resize(static_cast<std::size_t>(count));
    lists.blocks.resize(static_cast<std::size_t>((count + kPiece - 1) / kPiece));
    team.forPieces(count, kPiece, [&](std::int64_t first, std::int64_t end, int) {
        std::uint64_t touched = 0;
        for (std::int64_t t = first; t < end; ++t) {
            Triangle& triangle = *mesh.Triangle(static_cast<std::int32_t>(t));
            const Corners c = takeCorners(triangle, setNeighbours);
            lists.triangles[static_cast<std::size_t>(t)] = c;
            // The lower ends of three edges: the least corner, and the middle one.
            const std::int32_t least = std::min({c[0], c[1], c[2]});
            const std::int32_t most = std::max({c[0], c[1], c[2]});
            const std::int32_t middle = (c[0] ^ c[1] ^ c[2]) ^ least ^ most;
            touched |= std::uint64_t{1} << blocks.blockOf(least);
            touched |= std::uint64_t{1} << blocks.blockOf(middle);
        }
        lists.blocks[static_cast<std::size_t>(first / kPiece)] = touched;
    });
    return lists;
}

/// A range of vertices, made of whole blocks. To group its half-edges, only those pieces of
/// triangles are read that touch one of the blocks.
struct VertexRange {
    std::int32_t first = 0;
    std::int32_t end = 0;
    std::uint64_t blocks = 0;  ///< one bit each

    bool holds(std::int32_t vertex) const { return first <= vertex && vertex < end; }
};

std::vector<VertexRange> splitVertices(const VertexBlocks& blocks, int shares) {
    std::vector<VertexRange> ranges;
    for (int i = 0; i < shares; ++i) {
        const int first = blocks.count() * i / shares;
        const int end = blocks.count() * (i + 1) / shares;
        if (first == end) continue;
        VertexRange range = {blocks.firstOf(first), blocks.firstOf(end), 0};
        for (int block = first; block < end; ++block) range.blocks |= std::uint64_t{1} << block;
        ranges.push_back(range);
    }
    return ranges;
}

/// The number of pieces of triangles that all ranges read, in all.
std::size_t piecesRead(const std::vector<VertexRange>& ranges, const CornerLists& lists) {
    std::size_t pieces = 0;
    for (const VertexRange& range : ranges) {
        for (const std::uint64_t touched : lists.blocks) pieces += (touched & range.blocks) != 0;
    }
    return pieces;
}

/// More ranges than threads balance the load. But if triangles are not stored in the order of their
/// vertices, every range reads most triangles, and there is one range per thread.
std::vector<VertexRange> rangesFor(const Tesk::Team& team, const VertexBlocks& blocks,
                                   const CornerLists& lists) {
    constexpr int kPerThread = 4;
    if (team.size() > 1) {
        std::vector<VertexRange> many = splitVertices(blocks, team.size() * kPerThread);
        if (piecesRead(many, lists) <= lists.blocks.size() * 2) return many;
    }
    return splitVertices(blocks, team.size());
}

/// Calls visit(lower vertex − range.first, HalfEdge) for the half-edges whose lower vertex is in
/// the range, in the order of the triangles.
template <class Visit>
void forEachHalfEdge(const CornerLists& lists, const VertexRange& range, Visit visit) {
    for (std::size_t piece = 0; piece < lists.blocks.size(); ++piece) {
        if ((lists.blocks[piece] & range.blocks) == 0) continue;
        const std::size_t first = piece * kPiece;
        const std::size_t end = std::min(first + kPiece, lists.triangles.size());
        for (std::size_t t = first; t < end; ++t) {
            const Corners& c = lists.triangles[t];
            if (isCollapsed(c)) continue;
            for (std::uint32_t k = 0; k < 3; ++k) {
                const std::int32_t from = c[k];
                const std::int32_t to = c[k == 2 ? 0 : k + 1];
                const std::int32_t lower = std::min(from, to);
                if (!range.holds(lower)) continue;
                visit(static_cast<std::size_t>(lower - range.first),
                      HalfEdge(std::max(from, to), static_cast<std::int32_t>(t), k, from < to));
            }
        }
    }
}

/// The half-edges whose lower vertex is in a range, grouped by that vertex.
struct HalfEdgeGroups {
    std::vector<std::uint32_t> ends;  ///< where each vertex's group ends, and the next begins
    Tesk::RawVector<HalfEdge> halfEdges;

    HalfEdge* begin(std::size_t vertex) {
        return halfEdges.data() + (vertex == 0 ? 0 : ends[vertex - 1]);
    }
    HalfEdge* end(std::size_t vertex) { return halfEdges.data() + ends[vertex]; }
};

HalfEdgeGroups groupHalfEdges(const CornerLists& lists, const VertexRange& range) {
    HalfEdgeGroups groups;
    std::vector<std::uint32_t>& ends = groups.ends;
    ends.resize(static_cast<std::size_t>(range.end - range.first));
    forEachHalfEdge(lists, range, [&](std::size_t lower, const HalfEdge&) { ++ends[lower]; });
    // Where each group begins; filling it moves that to its end.
    std::uint32_t total = 0;
    for (std::uint32_t& end : ends) {
        const std::uint32_t count = end;
        end = total;
        total += count;
    }
    groups.halfEdges.resize(total);
    forEachHalfEdge(lists, range, [&](std::size_t lower, const HalfEdge& halfEdge) {
        groups.halfEdges[ends[lower]++] = halfEdge;
    });
    return groups;
}

/// Sorts by insertion, the fastest way for the few edges at a vertex.
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

/// Counts, and links if wanted, the edges whose lower vertex is one vertex.
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

/// The same for all vertices of a range.
TopologyCounts finishRange(Mesh& mesh, const CornerLists& lists, const VertexRange& range,
                           bool setNeighbours) {
    TopologyCounts counts;
    HalfEdgeGroups groups = groupHalfEdges(lists, range);
    for (std::size_t v = 0; v < groups.ends.size(); ++v) {
        finishVertex(mesh, groups.begin(v), groups.end(v), setNeighbours, counts);
    }
    return counts;
}

TopologyCounts buildOnTeam(Tesk::Team& team, Mesh& mesh, bool setNeighbours) {
    const VertexBlocks blocks(mesh.VertexCount());
    const CornerLists lists = cornersOf(team, mesh, blocks, setNeighbours);
    const std::vector<VertexRange> ranges = rangesFor(team, blocks, lists);
    std::mutex mutex;
    TopologyCounts all;
    const auto count = static_cast<std::int64_t>(ranges.size());
    team.forPieces(count, 1, [&](std::int64_t i, std::int64_t, int) {
        const TopologyCounts counts =
            finishRange(mesh, lists, ranges[static_cast<std::size_t>(i)], setNeighbours);
        const std::lock_guard lock(mutex);
        all.openEdges += counts.openEdges;
        all.nonManifoldEdges += counts.nonManifoldEdges;
        all.inconsistentEdges += counts.inconsistentEdges;
    });
    return all;
}

}  // namespace

TopologyCounts buildEdgeTopology(Mesh& mesh, bool setNeighbours) {
    constexpr std::int64_t kTrianglesPerThread = 50'000;
    TopologyCounts counts;
    Tesk::withTeam(Tesk::threadsFor(mesh.TriangleCount(), kTrianglesPerThread),
                   [&](Tesk::Team& team) { counts = buildOnTeam(team, mesh, setNeighbours); });
    return counts;
}

}  // namespace Tesk::mesh

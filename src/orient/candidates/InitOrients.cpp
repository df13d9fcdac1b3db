#include "orient/candidates/InitOrients.h"

#include <robin_hood.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>

#include "TeskCommon/Assert.h"
#include "TeskThreads/Team.h"
#include "orient/candidates/DirectionBuckets.h"
#include "orient/candidates/DirectionKey.h"
#include "orient/candidates/RandomSource.h"

namespace Tesk::orient {
namespace {

using Direction = UVector3<float>;
using Mesh = UMesh<float>;

constexpr std::size_t kPopularBuckets = 10;

/// Down, four at 45° to down, eight horizontal ones, four at 45° to up, up.
constexpr std::array<Direction, 18> baseDirections() {
    constexpr float s = 0.70710677f;
    return {{{0, 0, -1},
             {s, 0, -s},
             {0, s, -s},
             {-s, 0, -s},
             {0, -s, -s},
             {1, 0, 0},
             {s, s, 0},
             {0, 1, 0},
             {-s, s, 0},
             {-1, 0, 0},
             {-s, -s, 0},
             {0, -1, 0},
             {s, -s, 0},
             {s, 0, s},
             {0, s, s},
             {-s, 0, s},
             {0, -s, s},
             {0, 0, 1}}};
}

bool isUsable(const Direction& d) {
    return std::isfinite(d.x) && std::isfinite(d.y) && std::isfinite(d.z) && d != Direction();
}

void appendWithOpposite(std::vector<Direction>& candidates, const Direction& direction) {
    if (!isUsable(direction)) return;
    candidates.push_back(direction);
    candidates.push_back(Direction() - direction);
}

/// Counts directions on all threads of a team. Each thread has buckets of its own.
class TeamBuckets {
 public:
    explicit TeamBuckets(Tesk::Team& team)
        : m_team(team), m_buckets(static_cast<std::size_t>(team.size())) {}

    /// The number of indices that a thread handles at a time.
    static constexpr std::int64_t kPiece = 4096;

    /// Counts directions with indices below `count`. find(first, end, add) is called for parts of
    /// that range; it calls add(direction, i) for i from first up to end, in order, and may skip
    /// any.
    template <class Find>
    void count(std::int64_t count, Find find) {
        m_team.forPieces(count, kPiece, [&](std::int64_t first, std::int64_t end, int thread) {
            DirectionBuckets& buckets = bucketsOf(thread);
            find(first, end, [&](const Direction& direction, std::int64_t i) {
                buckets.add(DirectionBuckets::cellOf(direction), direction,
                            static_cast<std::int32_t>(i));
            });
        });
    }

    /// Appends the directions of the fullest buckets, each with its opposite, and empties all
    /// buckets.
    void appendFullest(std::vector<Direction>& candidates) {
        DirectionBuckets& all = bucketsOf(0);
        for (auto others = m_buckets.begin() + 1; others != m_buckets.end(); ++others) {
            if (*others) all.take(**others);
        }
        for (const DirectionBucket& bucket : all.takeFullest(kPopularBuckets)) {
            appendWithOpposite(candidates, bucket.last);
        }
    }

 private:
    /// The buckets of a thread, which creates them when it first needs them.
    DirectionBuckets& bucketsOf(int thread) {
        std::optional<DirectionBuckets>& buckets = m_buckets[static_cast<std::size_t>(thread)];
        return buckets ? *buckets : buckets.emplace();
    }

    Tesk::Team& m_team;
    std::vector<std::optional<DirectionBuckets>> m_buckets;
};

template <class NormalOf>
void appendTriangleNormals(std::int32_t triangles, const NormalOf& normalOf, TeamBuckets& buckets,
                           std::vector<Direction>& candidates) {
    buckets.count(triangles, [&](std::int64_t first, std::int64_t end, auto add) {
        for (std::int64_t i = first; i < end; ++i) add(normalOf(static_cast<std::int32_t>(i)), i);
    });
    buckets.appendFullest(candidates);
}

int samplesPerTriangle(std::int32_t triangles) {
    if (triangles < 1000) return 30;
    if (triangles < 2000) return 15;
    if (triangles < 5000) return 5;
    if (triangles < 10000) return 3;
    if (triangles < 20000) return 2;
    return 1;
}

/// Maps vertices to where the placement puts them. An identity leaves their bits unchanged.
class PlacedPoints {
 public:
    explicit PlacedPoints(const UMatrix4<float>& placement)
        : m_placement(placement), m_isIdentity(placement.isIdenticalMatrix()) {}

    UPoint3<float> operator()(const UVertex<float>& vertex) const {
        const UPoint3<float>& p = vertex.P();
        return m_isIdentity ? p : p * m_placement;
    }

 private:
    UMatrix4<float> m_placement;
    bool m_isIdentity;
};

/// The random choices for a plane: the corner of the triangle that is left out, and the index of a
/// vertex anywhere in the mesh, before it is reduced to the number of vertices.
struct Draw {
    int skipped;
    std::int32_t anywhere;  ///< at most 32767
};

/// The normal of the plane through two corners of a triangle and one vertex from anywhere.
Direction planeNormal(const Mesh& mesh, const PlacedPoints& points, std::int32_t triangle,
                      const Draw& draw) {
    TESK_ASSERT(draw.skipped >= 0 && draw.skipped < 3 && draw.anywhere >= 0);
    const UTriangle<float>& t = *mesh.Triangle(triangle);
    const std::int32_t anywhere =
        draw.anywhere < mesh.VertexCount() ? draw.anywhere : draw.anywhere % mesh.VertexCount();
    const UPoint3<float> p0 = points(*t.V(draw.skipped == 0 ? 1 : 0));
    const UPoint3<float> p1 = points(*t.V(draw.skipped == 2 ? 1 : 2));
    const UPoint3<float> p2 = points(*mesh.Vertex(anywhere));
    return ((p1 - p0) * (p2 - p0)).GetNormal();
}

/// The random choices for all planes. They are the same as if the calling thread made them one
/// after another, but any thread can read any of them.
class PlaneDraws {
 public:
    /// @param numbers  two for each plane
    explicit PlaneDraws(RandomRun numbers) : m_numbers(std::move(numbers)) {}

    /// Calls take(draw) for the planes from `first` up to `end`, at most TeamBuckets::kPiece of
    /// them.
    template <class Take>
    void forEach(std::int64_t first, std::int64_t end, Take take) const {
        TESK_ASSERT(first <= end && end - first <= TeamBuckets::kPiece);
        std::array<std::uint16_t, TeamBuckets::kPiece * 2> storage;
        const auto numbers = std::span(storage).first(static_cast<std::size_t>(end - first) * 2);
        m_numbers.read(static_cast<std::size_t>(first) * 2, numbers);
        for (std::size_t k = 0; k < numbers.size(); k += 2) {
            const int skipped = numbers[k] % 3;
            take(Draw{skipped, numbers[k + 1]});
        }
    }

 private:
    RandomRun m_numbers;
};

std::int64_t planesOf(std::int32_t triangles) {
    return std::int64_t{triangles} * samplesPerTriangle(triangles);
}

void appendSampledNormals(const Mesh& mesh, const UMatrix4<float>& placement,
                          const PlaneDraws& draws, TeamBuckets& buckets,
                          std::vector<Direction>& candidates) {
    const std::int32_t triangles = mesh.TriangleCount();
    const std::int64_t planes = planesOf(triangles);
    const PlacedPoints points(placement);
    buckets.count(planes, [&](std::int64_t first, std::int64_t end, auto add) {
        std::int64_t i = first;
        auto triangle = static_cast<std::int32_t>(first % triangles);
        draws.forEach(first, end, [&](const Draw& draw) {
            const Direction normal = planeNormal(mesh, points, triangle, draw);
            // A plane without a normal is skipped, but its index is used up. A NaN normal counts.
            if (!normal.IsZeroLength()) add(normal, i);
            ++i;
            if (++triangle == triangles) triangle = 0;
        });
    });
    buckets.appendFullest(candidates);
}

std::vector<Direction> withoutDuplicates(const std::vector<Direction>& candidates) {
    robin_hood::unordered_set<std::int64_t> cells;
    std::vector<Direction> distinct;
    distinct.reserve(candidates.size());
    for (const Direction& direction : candidates) {
        if (cells.insert(directionKey(direction)).second) distinct.push_back(direction);
    }
    return distinct;
}

template <class NormalOf>
std::vector<Direction> orientsOf(const MeshKernel& mesh, const NormalOf& normalOf,
                                 const PlaneDraws& draws) {
    const auto shared = mesh.getMesh();
    constexpr auto kBase = baseDirections();
    std::vector<Direction> candidates(kBase.begin(), kBase.end());
    constexpr std::int64_t kTrianglesPerThread = 50'000;
    Tesk::withTeam(
        Tesk::threadsFor(shared->TriangleCount(), kTrianglesPerThread), [&](Tesk::Team& team) {
            TeamBuckets buckets(team);
            appendTriangleNormals(shared->TriangleCount(), normalOf, buckets, candidates);
            appendSampledNormals(*shared, mesh.getMatrix(), draws, buckets, candidates);
        });
    return withoutDuplicates(candidates);
}

}  // namespace

std::vector<Direction> initOrients(MeshKernel* mesh) {
    TESK_ASSERT(mesh != nullptr);
    mesh->updateTriangleNormal();
    const auto shared = mesh->getMesh();
    const std::int64_t planes = planesOf(shared->TriangleCount());
    return orientsOf(
        *mesh, [&](std::int32_t i) { return shared->Triangle(i)->N(); },
        PlaneDraws(RandomRun(static_cast<std::size_t>(planes) * 2)));
}

std::vector<Direction> initOrients(const MeshKernel& mesh,
                                   const std::function<Direction(std::int32_t)>& normalOf,
                                   std::uint32_t seed) {
    return orientsOf(mesh, normalOf, PlaneDraws(RandomRun::fromSeed(seed)));
}

std::span<const Direction> fixedOrients() {
    static constexpr auto kBase = baseDirections();
    return kBase;
}

}  // namespace Tesk::orient

#include "InitOrients.h"

#include <robin_hood.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "DirectionBuckets.h"
#include "DirectionKey.h"
#include "RandomSource.h"

namespace {

using Direction = UVector3<float>;
using Mesh = UMesh<float>;

constexpr std::size_t kPopularBuckets = 10;

/// Down, 45° around down, horizontal every 45°, 45° around up, up.
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

void appendFullest(DirectionBuckets& buckets, std::vector<Direction>& candidates) {
    for (const DirectionBucket& bucket : buckets.takeFullest(kPopularBuckets)) {
        appendWithOpposite(candidates, bucket.last);
    }
}

/// A direction with its cell, found on any thread, to be counted in order.
struct FiledDirection {
    Direction direction;
    std::uint32_t cell = 0;
};

/// How many directions are found before they are counted.
constexpr std::int32_t kChunk = 1 << 15;

/// Calls find(i) for i from 0 up to `count`, in parallel, and take(i, what it found) in order.
template <class Find, class Take>
void findAndTake(std::int32_t count, Find find, Take take) {
    std::vector<FiledDirection> found(static_cast<std::size_t>(std::min(count, kChunk)));
    for (std::int32_t first = 0; first < count;) {
        const std::int32_t length = std::min(count - first, kChunk);
#pragma omp parallel for schedule(static)
        for (std::int32_t k = 0; k < length; ++k) {
            const Direction direction = find(first + k);
            found[static_cast<std::size_t>(k)] = {direction, DirectionBuckets::cellOf(direction)};
        }
        for (std::int32_t k = 0; k < length; ++k) {
            take(first + k, found[static_cast<std::size_t>(k)]);
        }
        first += length;
    }
}

void appendTriangleNormals(const Mesh& mesh, DirectionBuckets& buckets,
                           std::vector<Direction>& candidates) {
    findAndTake(
        mesh.TriangleCount(), [&](std::int32_t i) { return mesh.Triangle(i)->N(); },
        [&](std::int32_t i, const FiledDirection& normal) {
            buckets.add(normal.cell, normal.direction, i);
        });
    appendFullest(buckets, candidates);
}

int samplesPerTriangle(std::int32_t triangles) {
    if (triangles < 1000) return 30;
    if (triangles < 2000) return 15;
    if (triangles < 5000) return 5;
    if (triangles < 10000) return 3;
    if (triangles < 20000) return 2;
    return 1;
}

/// Where a vertex lies as placed; an identity placement leaves its bits alone.
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

/// What was drawn for a plane: the corner left out, and the place of the vertex from anywhere among
/// the first 32,768.
struct Draw {
    std::uint16_t skipped;
    std::uint16_t anywhere;
};

/// The normal of the plane through two corners of a triangle and one vertex from anywhere.
Direction planeNormal(const Mesh& mesh, const PlacedPoints& points, std::int32_t triangle,
                      const Draw& draw) {
    const UTriangle<float>& t = *mesh.Triangle(triangle);
    const std::int32_t anywhere =
        draw.anywhere < mesh.VertexCount() ? draw.anywhere : draw.anywhere % mesh.VertexCount();
    const UPoint3<float> p0 = points(*t.V(draw.skipped == 0 ? 1 : 0));
    const UPoint3<float> p1 = points(*t.V(draw.skipped == 2 ? 1 : 2));
    const UPoint3<float> p2 = points(*mesh.Vertex(anywhere));
    return ((p1 - p0) * (p2 - p0)).GetNormal();
}

/// The numbers are drawn in order, on this thread; the planes are formed on all.
void appendSampledNormals(const Mesh& mesh, const UMatrix4<float>& placement,
                          DirectionBuckets& buckets, std::vector<Direction>& candidates) {
    const std::int32_t triangles = mesh.TriangleCount();
    const PlacedPoints points(placement);
    std::vector<Draw> draws(static_cast<std::size_t>(triangles));
    std::int32_t count = 0;
    for (int round = 0; round < samplesPerTriangle(triangles); ++round) {
        for (Draw& draw : draws) {
            draw.skipped = static_cast<std::uint16_t>(nextRandom() % 3);
            draw.anywhere = static_cast<std::uint16_t>(nextRandom());
        }
        findAndTake(
            triangles,
            [&](std::int32_t i) {
                return planeNormal(mesh, points, i, draws[static_cast<std::size_t>(i)]);
            },
            [&](std::int32_t, const FiledDirection& normal) {
                // Planes without a normal are left out; an undefined one counts as one.
                if (normal.direction.IsZeroLength()) return;
                buckets.add(normal.cell, normal.direction, count++);
            });
    }
    appendFullest(buckets, candidates);
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

}  // namespace

std::vector<Direction> initOrients(MeshKernel* mesh) {
    const auto shared = mesh->getMesh();
    mesh->updateTriangleNormal();
    constexpr auto kBase = baseDirections();
    std::vector<Direction> candidates(kBase.begin(), kBase.end());
    DirectionBuckets buckets;
    appendTriangleNormals(*shared, buckets, candidates);
    appendSampledNormals(*shared, mesh->getMatrix(), buckets, candidates);
    return withoutDuplicates(candidates);
}

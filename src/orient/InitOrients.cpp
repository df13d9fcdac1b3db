#include "InitOrients.h"

#include <robin_hood.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <execution>

#include "DirectionKey.h"
#include "RandomSource.h"

namespace {

using Direction = UVector3<float>;
using Mesh = UMesh<float>;

/// Directions that share a grid cell: how many, and the place of the last one in its list.
struct DirectionBucket {
    std::int32_t index = 0;
    std::int32_t count = 0;
};

using BucketMap = robin_hood::unordered_map<std::int64_t, DirectionBucket>;

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

void countDirection(BucketMap& buckets, const Direction& direction, std::int32_t index) {
    DirectionBucket& bucket = buckets[directionKey(direction)];
    bucket.index = index;
    ++bucket.count;
}

/// The most populated buckets, fullest first, at most kPopularBuckets; empties the map. Equal
/// counts go by index, so that the result depends neither on the map nor on the sort.
std::vector<DirectionBucket> takePopularBuckets(BucketMap& buckets) {
    std::vector<DirectionBucket> list;
    list.reserve(buckets.size());
    for (const auto& [key, bucket] : buckets) list.push_back(bucket);
    buckets.clear();
    std::sort(std::execution::par, list.begin(), list.end(),
              [](const DirectionBucket& a, const DirectionBucket& b) {
                  return a.count != b.count ? a.count > b.count : a.index < b.index;
              });
    if (list.size() > kPopularBuckets) list.resize(kPopularBuckets);
    return list;
}

bool isUsable(const Direction& d) {
    return std::isfinite(d.x) && std::isfinite(d.y) && std::isfinite(d.z) && d != Direction();
}

void appendWithOpposite(std::vector<Direction>& candidates, const Direction& direction) {
    if (!isUsable(direction)) return;
    candidates.push_back(direction);
    candidates.push_back(Direction() - direction);
}

void appendTriangleNormals(const Mesh& mesh, BucketMap& buckets,
                           std::vector<Direction>& candidates) {
    for (std::int32_t i = 0; i < mesh.TriangleCount(); ++i) {
        countDirection(buckets, mesh.Triangle(i)->N(), i);
    }
    for (const DirectionBucket& bucket : takePopularBuckets(buckets)) {
        appendWithOpposite(candidates, mesh.Triangle(bucket.index)->N());
    }
}

int samplesPerTriangle(std::int32_t triangles) {
    if (triangles < 1000) return 30;
    if (triangles < 2000) return 15;
    if (triangles < 5000) return 5;
    if (triangles < 10000) return 3;
    if (triangles < 20000) return 2;
    return 1;
}

/// A point of the mesh as placed; an identity placement leaves its bits alone.
class PlacedPoints {
 public:
    PlacedPoints(const Mesh& mesh, const UMatrix4<float>& placement)
        : m_mesh(mesh), m_placement(placement), m_isIdentity(placement.isIdenticalMatrix()) {}

    UPoint3<float> operator[](std::int32_t vertex) const {
        const UPoint3<float>& p = m_mesh.Vertex(vertex)->P();
        return m_isIdentity ? p : p * m_placement;
    }

 private:
    const Mesh& m_mesh;
    UMatrix4<float> m_placement;
    bool m_isIdentity;
};

/// Normals of planes through two corners of a triangle and one vertex drawn from anywhere among
/// the first 32,768; planes without a normal are left out.
std::vector<Direction> samplePlanes(const Mesh& mesh, const UMatrix4<float>& placement) {
    const std::int32_t triangles = mesh.TriangleCount();
    const int rounds = samplesPerTriangle(triangles);
    const PlacedPoints points(mesh, placement);
    std::vector<Direction> normals;
    normals.reserve(static_cast<std::size_t>(triangles) * static_cast<std::size_t>(rounds));
    for (int round = 0; round < rounds; ++round) {
        for (std::int32_t i = 0; i < triangles; ++i) {
            const UTriangle<float>& triangle = *mesh.Triangle(i);
            const int skipped = nextRandom() % 3;
            const std::int32_t anywhere = nextRandom() % mesh.VertexCount();
            const UPoint3<float> p0 = points[triangle.V(skipped == 0 ? 1 : 0)->Index()];
            const UPoint3<float> p1 = points[triangle.V(skipped == 2 ? 1 : 2)->Index()];
            const UPoint3<float> p2 = points[anywhere];
            const Direction normal = ((p1 - p0) * (p2 - p0)).GetNormal();
            // Written so that a NaN length counts as a length.
            if (!(normal.GetLength() == 0.0f)) normals.push_back(normal);
        }
    }
    return normals;
}

void appendSampledNormals(const Mesh& mesh, const UMatrix4<float>& placement, BucketMap& buckets,
                          std::vector<Direction>& candidates) {
    const std::vector<Direction> normals = samplePlanes(mesh, placement);
    for (std::size_t i = 0; i < normals.size(); ++i) {
        countDirection(buckets, normals[i], static_cast<std::int32_t>(i));
    }
    for (const DirectionBucket& bucket : takePopularBuckets(buckets)) {
        appendWithOpposite(candidates, normals[static_cast<std::size_t>(bucket.index)]);
    }
}

std::vector<Direction> withoutDuplicates(const std::vector<Direction>& candidates,
                                         BucketMap& buckets) {
    std::vector<Direction> distinct;
    distinct.reserve(candidates.size());
    for (const Direction& direction : candidates) {
        DirectionBucket& bucket = buckets[directionKey(direction)];
        if (bucket.count != 0) continue;
        bucket.count = 1;
        distinct.push_back(direction);
    }
    return distinct;
}

}  // namespace

std::vector<Direction> initOrients(MeshKernel* mesh) {
    const auto shared = mesh->getMesh();
    mesh->updateTriangleNormal();
    constexpr auto kBase = baseDirections();
    std::vector<Direction> candidates(kBase.begin(), kBase.end());
    BucketMap buckets;
    appendTriangleNormals(*shared, buckets, candidates);
    appendSampledNormals(*shared, mesh->getMatrix(), buckets, candidates);
    return withoutDuplicates(candidates, buckets);
}

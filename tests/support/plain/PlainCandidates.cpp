#include "plain/PlainCandidates.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

namespace {

using Vector = UVector3<float>;

struct Bucket {
    int index = 0;
    int count = 0;
};

constexpr float kS = 0.70710677f;

const Vector kBaseDirections[18] = {
    {0, 0, -1},   {kS, 0, -kS}, {0, kS, -kS}, {-kS, 0, -kS}, {0, -kS, -kS}, {1, 0, 0},
    {kS, kS, 0},  {0, 1, 0},    {-kS, kS, 0}, {-1, 0, 0},    {-kS, -kS, 0}, {0, -1, 0},
    {kS, -kS, 0}, {kS, 0, kS},  {0, kS, kS},  {-kS, 0, kS},  {0, -kS, kS},  {0, 0, 1}};

std::int64_t truncated(float value) {
    if (std::isnan(value)) return 0;
    if (value >= 0x1p63f) return std::numeric_limits<std::int64_t>::max();
    if (value <= -0x1p63f) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

std::int64_t cellOf(float component) {
    const std::int64_t t = truncated(component * 1000.0f);
    // Near the end of the range the +15 must not run over it.
    const std::int64_t shifted = t > std::numeric_limits<std::int64_t>::max() - 15
                                     ? std::numeric_limits<std::int64_t>::max()
                                     : t + 15;
    return shifted / 30;
}

bool isDirection(const Vector& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z) && v.GetLength() != 0.0f;
}

/// The members of the ten fullest cells, each with its opposite. The last member of a cell stands
/// for it; of cells equally full the one with the lower last member goes first.
void appendMostFrequent(const std::vector<Vector>& members, std::vector<Vector>& candidates) {
    std::map<std::int64_t, Bucket> buckets;
    for (std::size_t i = 0; i < members.size(); ++i) {
        Bucket& bucket = buckets[plainDirectionKey(members[i])];
        bucket.index = static_cast<int>(i);
        bucket.count += 1;
    }
    std::vector<Bucket> sorted;
    for (const auto& [key, bucket] : buckets) sorted.push_back(bucket);
    std::sort(sorted.begin(), sorted.end(), [](const Bucket& l, const Bucket& r) {
        return l.count > r.count || (l.count == r.count && l.index < r.index);
    });
    for (std::size_t k = 0; k < sorted.size() && k < 10; ++k) {
        const Vector n = members[static_cast<std::size_t>(sorted[k].index)];
        if (!isDirection(n)) continue;
        candidates.push_back(n);
        candidates.push_back(Vector(0.0f, 0.0f, 0.0f) - n);
    }
}

std::vector<Vector> sampledNormals(const MeshKernel& kernel, PlainRandom& random) {
    const std::shared_ptr<UMesh<float>> mesh = kernel.getMesh();
    const UMatrix4<float> matrix = kernel.getMatrix();
    std::vector<Vector> normals;
    const int rounds = plainSamplesPerTriangle(mesh->TriangleCount());
    for (int round = 0; round < rounds; ++round) {
        for (int t = 0; t < mesh->TriangleCount(); ++t) {
            int vertices[3] = {0, 0, 0};
            const int skipped = random.next() % 3;
            int slot = 0;
            for (int k = 0; k < 3; ++k) {
                if (k != skipped) vertices[slot++] = mesh->Triangle(t)->V(k)->Index();
            }
            vertices[2] = random.next() % mesh->VertexCount();
            UPoint3<float> p[3];
            for (int k = 0; k < 3; ++k) {
                p[k] = mesh->Vertex(vertices[k])->P();
                if (!matrix.isIdenticalMatrix()) p[k] = p[k] * matrix;
            }
            const Vector normal = ((p[1] - p[0]) * (p[2] - p[0])).GetNormal();
            // Exactly zero: a NaN length counts as a length.
            if (normal.GetLength() != 0.0f) normals.push_back(normal);
        }
    }
    return normals;
}

}  // namespace

std::int64_t plainDirectionKey(const UVector3<float>& direction) {
    // Shifts of negative numbers in two's complement: done unsigned.
    const auto x = static_cast<std::uint64_t>(cellOf(direction.x));
    const auto y = static_cast<std::uint64_t>(cellOf(direction.y));
    const auto z = static_cast<std::uint64_t>(cellOf(direction.z));
    return static_cast<std::int64_t>((((z << 10) ^ y) << 10) ^ x);
}

int plainSamplesPerTriangle(int triangleCount) {
    if (triangleCount < 1000) return 30;
    if (triangleCount < 2000) return 15;
    if (triangleCount < 5000) return 5;
    if (triangleCount < 10000) return 3;
    if (triangleCount < 20000) return 2;
    return 1;
}

std::vector<UVector3<float>> plainCandidates(MeshKernel& kernel, PlainRandom& random) {
    const std::shared_ptr<UMesh<float>> mesh = kernel.getMesh();
    kernel.updateTriangleNormal();
    std::vector<Vector> candidates(std::begin(kBaseDirections), std::end(kBaseDirections));

    std::vector<Vector> triangleNormals;
    for (int t = 0; t < mesh->TriangleCount(); ++t) {
        triangleNormals.push_back(mesh->Triangle(t)->N());
    }
    appendMostFrequent(triangleNormals, candidates);
    appendMostFrequent(sampledNormals(kernel, random), candidates);

    std::map<std::int64_t, int> seen;
    std::vector<Vector> result;
    for (const Vector& candidate : candidates) {
        if (seen[plainDirectionKey(candidate)]++ == 0) result.push_back(candidate);
    }
    return result;
}

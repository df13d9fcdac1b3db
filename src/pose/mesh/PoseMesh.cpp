#include "pose/mesh/PoseMesh.h"

#include <algorithm>
#include <cmath>

#include "TeskMeshData/TeskMath.h"
#include "TeskThreads/Team.h"
#include "orient/turn/Flatten.h"
#include "orient/turn/TurnedPart.h"

namespace Tesk::pose {

namespace {

using Vector = UVector3<double>;

/// Facets are summed in blocks of this many, and the blocks in order: so threads can share them.
constexpr std::int64_t kBlock = 4096;
static_assert(kBlock % kBlockSize == 0);

struct SolidSums {
    double surface = 0.0;
    Vector surfaceMoment;
    double volume = 0.0;
    Vector volumeMoment;

    void add(const SolidSums& other) {
        surface += other.surface;
        surfaceMoment += other.surfaceMoment;
        volume += other.volume;
        volumeMoment += other.volumeMoment;
    }
};

Vector wide(const UPoint3<float>& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}

/// A facet's share, in the mesh's own frame about `origin`, but for the area, which is as placed.
void addFacet(const PoseMesh& mesh, std::size_t i, const Vector& origin, SolidSums& sums) {
    const auto area = static_cast<double>(mesh.areas[i]);
    if (!std::isfinite(area)) return;
    const auto& corners = mesh.flat.corners[i];
    const Vector a = wide(mesh.flat.point(corners[0])) - origin;
    const Vector b = wide(mesh.flat.point(corners[1])) - origin;
    const Vector c = wide(mesh.flat.point(corners[2])) - origin;
    const Vector sum = a + b + c;
    const double volume = (a | (b * c)) / 6.0;
    sums.surface += area;
    sums.surfaceMoment += sum * (area / 3.0);
    sums.volume += volume;
    sums.volumeMoment += sum * (volume / 4.0);
}

void setFacet(PoseMesh& mesh, std::size_t i) {
    const auto& corners = mesh.flat.corners[i];
    const UPoint3<float> a = mesh.placed(corners[0]);
    const UPoint3<float> b = mesh.placed(corners[1]);
    const UPoint3<float> c = mesh.placed(corners[2]);
    const UVector3<float> normal = ((b - a) * (c - b)).GetNormal();
    mesh.normalX[i] = normal.x;
    mesh.normalY[i] = normal.y;
    mesh.normalZ[i] = normal.z;
    mesh.areas[i] = TeskMath<float>::CalculateTriangleArea(a, b, c);
    mesh.normalBounds[i / kBlockSize].extend(normal);
    mesh.blockAreas[i / kBlockSize] += static_cast<double>(mesh.areas[i]);
    for (const std::int32_t v : corners) {
        const UPoint3<float> p = mesh.flat.point(v);
        mesh.facetBounds[i / kBlockSize].extend(UVector3<float>(p.x, p.y, p.z));
    }
}

void setVertexBounds(PoseMesh& mesh, Tesk::Team& team) {
    const auto count = static_cast<std::int64_t>(mesh.flat.keptVertices);
    constexpr auto kSize = static_cast<std::int64_t>(kBlockSize);
    mesh.vertexBounds.resize(static_cast<std::size_t>((count + kSize - 1) / kSize));
    team.forPieces(count, kBlock, [&](std::int64_t first, std::int64_t end, int) {
        for (std::int64_t v = first; v < end; ++v) {
            const UPoint3<float> p = mesh.placed(static_cast<std::int32_t>(v));
            mesh.vertexBounds[static_cast<std::size_t>(v / kSize)].extend(
                UVector3<float>(p.x, p.y, p.z));
        }
    });
    const std::size_t blocks = mesh.vertexBounds.size();
    mesh.vertexGroupBounds.resize((blocks + kGroupOfBlocks - 1) / kGroupOfBlocks);
    for (std::size_t block = 0; block < blocks; ++block) {
        mesh.vertexGroupBounds[block / kGroupOfBlocks].extend(mesh.vertexBounds[block]);
    }
}

double determinantOf(const UMatrix4<float>& m) {
    const auto row = [&](int r) {
        return UVector3<float>(m.at(r, 0), m.at(r, 1), m.at(r, 2)).As<double>();
    };
    return row(0) | (row(1) * row(2));
}

bool holds(const UBox3<float>& box, const Vector& p) {
    const Vector low = wide({box.MinX(), box.MinY(), box.MinZ()});
    const Vector high = wide({box.MaxX(), box.MaxY(), box.MaxZ()});
    return low.x <= p.x && p.x <= high.x && low.y <= p.y && p.y <= high.y && low.z <= p.z &&
           p.z <= high.z;
}

/// Fills what each facet has, and sums what all make up, about `origin`.
SolidSums setFacets(PoseMesh& mesh, const Vector& origin, Tesk::Team& team) {
    const std::size_t count = mesh.flat.corners.size();
    for (std::vector<float>* list : {&mesh.normalX, &mesh.normalY, &mesh.normalZ, &mesh.areas}) {
        list->resize(count);
    }
    mesh.facetBounds.resize((count + kBlockSize - 1) / kBlockSize);
    mesh.normalBounds.resize(mesh.facetBounds.size());
    mesh.blockAreas.resize(mesh.facetBounds.size());
    std::vector<SolidSums> sums(count / kBlock + 1);
    team.forPieces(static_cast<std::int64_t>(count), kBlock,
                   [&](std::int64_t first, std::int64_t end, int) {
                       for (std::int64_t i = first; i < end; ++i) {
                           setFacet(mesh, static_cast<std::size_t>(i));
                           addFacet(mesh, static_cast<std::size_t>(i), origin,
                                    sums[static_cast<std::size_t>(first / kBlock)]);
                       }
                   });
    SolidSums all;
    for (const SolidSums& block : sums) all.add(block);
    return all;
}

double diagonalOf(const UBox3<float>& box) {
    return (wide({box.MaxX(), box.MaxY(), box.MaxZ()}) - wide({box.MinX(), box.MinY(), box.MinZ()}))
        .GetLength();
}

void setSolid(PoseMesh& mesh, const UBox3<float>& ownBox, const Vector& origin,
              const SolidSums& sums) {
    // A solid thinner than this share of its surface times its diagonal has no volume to speak of.
    constexpr double kThinnest = 1e-6;
    mesh.surface = sums.surface;
    mesh.volume = std::fabs(sums.volume * determinantOf(mesh.flat.placement));
    if (sums.surface > 0.0) mesh.centroid = origin + sums.surfaceMoment / sums.surface;
    if (!(mesh.volume > kThinnest * mesh.surface * diagonalOf(mesh.flat.placedBox))) return;
    const Vector ofSolid = origin + sums.volumeMoment / sums.volume;
    if (holds(ownBox, ofSolid)) mesh.centroid = ofSolid;
}

}  // namespace

PoseMesh::PoseMesh(const MeshKernel& mesh) {
    constexpr std::int64_t kFacetsPerThread = 50'000;
    const std::int64_t facets = mesh.getMesh()->TriangleCount();
    Tesk::withTeam(Tesk::threadsFor(facets, kFacetsPerThread), [&](Tesk::Team& team) {
        flat = orient::flatten(team, *mesh.getMesh(), mesh.getMatrix());
        isInPlace = flat.placement.isIdenticalMatrix() && std::isfinite(flat.reach);
        setVertexBounds(*this, team);
        const UBox3<float> ownBox = boxThrough(flat, UMatrix4<float>());
        const Vector origin = wide(ownBox.Center());
        setSolid(*this, ownBox, origin, setFacets(*this, origin, team));
    });
}

}  // namespace Tesk::pose

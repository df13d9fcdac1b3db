#include "pose/PoseMesh.h"

#include <algorithm>
#include <cmath>

#include "TeskMeshData/TeskMath.h"
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

void setVertexBounds(PoseMesh& mesh) {
    const auto count = static_cast<std::int64_t>(mesh.flat.keptVertices);
    constexpr auto kSize = static_cast<std::int64_t>(kBlockSize);
    mesh.vertexBounds.resize(static_cast<std::size_t>((count + kSize - 1) / kSize));
#pragma omp parallel for schedule(static)
    for (std::int64_t first = 0; first < count; first += kSize) {
        BlockBounds& bounds = mesh.vertexBounds[static_cast<std::size_t>(first / kSize)];
        for (std::int64_t v = first; v < std::min(first + kSize, count); ++v) {
            const UPoint3<float> p = mesh.placed(static_cast<std::int32_t>(v));
            bounds.extend(UVector3<float>(p.x, p.y, p.z));
        }
    }
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

/// A solid thinner than this share of its surface times its diagonal has no volume to speak of.
constexpr double kThinnest = 1e-6;

}  // namespace

PoseMesh::PoseMesh(const MeshKernel& mesh)
    : flat(orient::flatten(*mesh.getMesh(), mesh.getMatrix())) {
    isInPlace = flat.placement.isIdenticalMatrix() && std::isfinite(flat.reach);
    const std::size_t count = flat.corners.size();
    for (std::vector<float>* list : {&normalX, &normalY, &normalZ, &areas}) list->resize(count);
    facetBounds.resize((count + kBlockSize - 1) / kBlockSize);
    normalBounds.resize(facetBounds.size());
    blockAreas.resize(facetBounds.size());
    setVertexBounds(*this);
    const UBox3<float> ownBox = boxThrough(flat, UMatrix4<float>());
    const Vector origin = wide(ownBox.Center());
    const std::int64_t blocks = (static_cast<std::int64_t>(count) + kBlock - 1) / kBlock;
    std::vector<SolidSums> sums(static_cast<std::size_t>(blocks));
#pragma omp parallel for schedule(static)
    for (std::int64_t block = 0; block < blocks; ++block) {
        const auto first = static_cast<std::size_t>(block * kBlock);
        const std::size_t end = std::min(first + kBlock, count);
        for (std::size_t i = first; i < end; ++i) {
            setFacet(*this, i);
            addFacet(*this, i, origin, sums[static_cast<std::size_t>(block)]);
        }
    }
    SolidSums all;
    for (const SolidSums& block : sums) all.add(block);
    surface = all.surface;
    volume = std::fabs(all.volume * determinantOf(flat.placement));
    const UBox3<float>& box = flat.placedBox;
    const double diagonal =
        (wide({box.MaxX(), box.MaxY(), box.MaxZ()}) - wide({box.MinX(), box.MinY(), box.MinZ()}))
            .GetLength();
    if (surface > 0.0) centroid = origin + all.surfaceMoment / surface;
    if (!(volume > kThinnest * surface * diagonal)) return;
    const Vector ofSolid = origin + all.volumeMoment / all.volume;
    if (holds(ownBox, ofSolid)) centroid = ofSolid;
}

}  // namespace Tesk::pose

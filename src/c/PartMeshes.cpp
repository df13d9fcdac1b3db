#include "c/PartMeshes.h"

#include <cstddef>
#include <cstdint>

namespace Tesk::c {

Tesk::PartMesh partMeshOf(const MeshKernel& kernel, const UMatrix4<float>& placement) {
    const auto mesh = kernel.getMesh();
    const bool isPlaced = !placement.isIdenticalMatrix();
    Tesk::PartMesh placed;
    placed.positions.reserve(static_cast<std::size_t>(mesh->VertexCount()));
    for (std::int32_t i = 0; i < mesh->VertexCount(); ++i) {
        const UPoint3<float> p = isPlaced ? mesh->Vertex(i)->P() * placement : mesh->Vertex(i)->P();
        placed.positions.push_back({p.x, p.y, p.z});
    }
    placed.triangles.reserve(static_cast<std::size_t>(mesh->TriangleCount()));
    for (std::int32_t i = 0; i < mesh->TriangleCount(); ++i) {
        const UTriangle<float>* const t = mesh->Triangle(i);
        placed.triangles.push_back({t->V(0)->Index(), t->V(1)->Index(), t->V(2)->Index()});
    }
    return placed;
}

std::vector<UPoint3<float>> positionsOf(const Tesk::PartMesh& mesh) {
    std::vector<UPoint3<float>> positions;
    positions.reserve(mesh.positions.size());
    for (const Tesk::PartPoint& p : mesh.positions) positions.emplace_back(p.x, p.y, p.z);
    return positions;
}

}  // namespace Tesk::c

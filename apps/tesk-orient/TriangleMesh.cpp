#include "TriangleMesh.h"

#include <utility>

namespace App {

Tesk::PartMesh partMeshOf(TriangleMesh mesh) {
    Tesk::PartMesh part;
    part.triangles = std::move(mesh.triangles);
    part.positions.reserve(mesh.positions.size());
    for (const UPoint3<float>& p : mesh.positions) part.positions.push_back({p.x, p.y, p.z});
    return part;
}

TriangleMesh triangleMeshOf(Tesk::PartMesh part) {
    TriangleMesh mesh;
    mesh.triangles = std::move(part.triangles);
    mesh.positions.reserve(part.positions.size());
    for (const Tesk::PartPoint& p : part.positions) mesh.positions.emplace_back(p.x, p.y, p.z);
    return mesh;
}

}  // namespace App

#include <vector>

#include "TeskMeshData/SurfaceMeasures.h"
#include "c/Call.h"
#include "c/Guard.h"
#include "c/Handles.h"
#include "c/PartMeshes.h"

using namespace Tesk::c;

namespace {

/// A host may have split its vertices along creases, or name three for every triangle.
Tesk::PartMesh welded(const MeshKernel& kernel, unsigned threads) {
    try {
        return Tesk::weld(partMeshOf(kernel, /*placement=*/{}), threads);
    } catch (const Tesk::PartFileError& error) {
        throw CallError(TESK_NO_RESULT, error.what());
    }
}

tesk_mesh_surface surfaceOf(const Tesk::PartMesh& mesh) {
    const std::vector<UPoint3<float>> positions = positionsOf(mesh);
    MeshKernel kernel(positions, mesh.triangles);
    kernel.UpdateTopo(/*rebuild=*/true, MeshKernel::kEdgeCounts);
    const Tesk::SurfaceMeasures measures = Tesk::measureSurface(positions, mesh.triangles);
    const auto [x, y, z] = Tesk::extentsOf(positions);
    return {.struct_size = sizeof(tesk_mesh_surface),
            .open_edges = kernel.topology().openEdges,
            .non_manifold_edges = kernel.topology().nonManifoldEdges,
            .inconsistent_edges = kernel.topology().inconsistentEdges,
            .degenerate_triangles = measures.degenerate,
            .volume = measures.volumeSixfold / 6.0,
            .size = {x, y, z}};
}

}  // namespace

tesk_status tesk_mesh_check(const tesk_mesh* mesh, const tesk_call* call,
                            tesk_mesh_surface* surface) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        needStruct(surface, "surface");
        const Call how(call);
        *surface = surfaceOf(welded(mesh->kernel, how.threads()));
    });
}

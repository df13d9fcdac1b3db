#include <algorithm>
#include <cstring>
#include <string>

#include "TeskSDKCommonTools/ConvexHull3.h"
#include "c/Arrays.h"
#include "c/Guard.h"
#include "c/Handles.h"

using namespace Tesk::c;

namespace {

void needRoom(std::int64_t capacity, std::int64_t count) {
    if (capacity >= count) return;
    refuse("there is room for " + std::to_string(capacity) + " of " + std::to_string(count));
}

}  // namespace

tesk_status tesk_mesh_create(const tesk_mesh_arrays* arrays, tesk_mesh** mesh) {
    return guarded([&] {
        needStruct(arrays, "arrays");
        need(mesh, "mesh");
        const auto positions = pointsOf({sizeof(tesk_points), arrays->position_type,
                                         arrays->positions, arrays->position_count,
                                         arrays->position_stride},
                                        "positions");
        const auto triangles = trianglesOf(*arrays, positions.size());
        MeshKernel kernel(positions, triangles);
        if (arrays->placement != nullptr) kernel.setMatrix(matrixOf(arrays->placement));
        *mesh = new tesk_mesh(std::move(kernel));
    });
}

tesk_status tesk_mesh_counts(const tesk_mesh* mesh, int64_t* positions, int64_t* triangles) {
    return guarded([&] {
        need(mesh, "mesh");
        const std::shared_lock lock(mesh->mutex);
        if (positions != nullptr) *positions = mesh->kernel.getMesh()->VertexCount();
        if (triangles != nullptr) *triangles = mesh->kernel.getMesh()->TriangleCount();
    });
}

tesk_status tesk_mesh_copy_positions(const tesk_mesh* mesh, float* positions, int64_t capacity) {
    return guarded([&] {
        need(mesh, "mesh");
        const std::shared_lock lock(mesh->mutex);
        const auto kept = mesh->kernel.getMesh();
        needRoom(capacity, kept->VertexCount());
        if (kept->VertexCount() > 0) need(positions, "positions");
        for (std::int32_t i = 0; i < kept->VertexCount(); ++i) {
            const UPoint3<float>& p = kept->Vertex(i)->P();
            std::memcpy(positions + std::ptrdiff_t{3} * i, &p, sizeof p);
        }
    });
}

tesk_status tesk_mesh_copy_triangles(const tesk_mesh* mesh, int32_t* triangles, int64_t capacity) {
    return guarded([&] {
        need(mesh, "mesh");
        const std::shared_lock lock(mesh->mutex);
        const auto kept = mesh->kernel.getMesh();
        needRoom(capacity, kept->TriangleCount());
        if (kept->TriangleCount() > 0) need(triangles, "triangles");
        for (std::int32_t i = 0; i < kept->TriangleCount(); ++i) {
            for (int k = 0; k < 3; ++k) *triangles++ = kept->Triangle(i)->V(k)->Index();
        }
    });
}

tesk_status tesk_mesh_set_placement(tesk_mesh* mesh, const float matrix[16]) {
    return guarded([&] {
        need(mesh, "mesh");
        need(matrix, "matrix");
        const std::unique_lock lock(mesh->mutex);
        mesh->kernel.setMatrix(matrixOf(matrix));
    });
}

tesk_status tesk_convex_hull(const tesk_points* points, tesk_mesh** hull, int32_t* dimension) {
    return guarded([&] {
        needStruct(points, "points");
        need(hull, "hull");
        const auto given = pointsOf(*points, "points");
        const gte::ConvexHull3 found(given.data(), static_cast<int>(given.size()), 3);
        *hull = new tesk_mesh(MeshKernel(found.getVertices(), found.getTriangles()));
        if (dimension != nullptr) *dimension = found.getDimension();
    });
}

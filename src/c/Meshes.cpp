#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

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
        const auto positions =
            pointsOf({sizeof(tesk_points), arrays->position_type, arrays->positions,
                      arrays->position_count, arrays->position_stride},
                     "positions");
        const auto triangles = trianglesOf(*arrays, positions.size());
        MeshKernel kernel(positions, triangles);
        if (arrays->placement != nullptr) kernel.setMatrix(matrixOf(arrays->placement));
        *mesh = new tesk_mesh(std::move(kernel));
    });
}

tesk_status tesk_mesh_counts(const tesk_mesh* mesh, int64_t* positions, int64_t* triangles) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        if (positions != nullptr) *positions = mesh->kernel.getMesh()->VertexCount();
        if (triangles != nullptr) *triangles = mesh->kernel.getMesh()->TriangleCount();
    });
}

tesk_status tesk_mesh_copy_positions(const tesk_mesh* mesh, float* positions, int64_t capacity) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        const auto kept = mesh->kernel.getMesh();
        needRoom(capacity, kept->VertexCount());
        if (kept->VertexCount() > 0) need(positions, "positions");
        auto* to = reinterpret_cast<unsigned char*>(positions);
        for (std::int32_t i = 0; i < kept->VertexCount(); ++i) {
            const UPoint3<float>& p = kept->Vertex(i)->P();
            const std::array xyz = {p.x, p.y, p.z};
            std::memcpy(to, xyz.data(), sizeof xyz);
            to += sizeof xyz;
        }
    });
}

tesk_status tesk_mesh_copy_triangles(const tesk_mesh* mesh, int32_t* triangles, int64_t capacity) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        const auto kept = mesh->kernel.getMesh();
        needRoom(capacity, kept->TriangleCount());
        if (kept->TriangleCount() > 0) need(triangles, "triangles");
        auto* to = reinterpret_cast<unsigned char*>(triangles);
        for (std::int32_t i = 0; i < kept->TriangleCount(); ++i) {
            const UTriangle<float>& t = *std::as_const(*kept).Triangle(i);
            const std::array corners = {t.V(0)->Index(), t.V(1)->Index(), t.V(2)->Index()};
            std::memcpy(to, corners.data(), sizeof corners);
            to += sizeof corners;
        }
    });
}

tesk_status tesk_mesh_set_placement(tesk_mesh* mesh, const float matrix[16]) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        need(matrix, "matrix");
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

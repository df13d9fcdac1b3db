#include "PartBox.h"

#include <cmath>
#include <vector>

#include "MeshChecks.h"
#include "TeskMeshData/MeshKernel.h"

namespace App {

double PartBox::volume() const {
    double volume = 8.0;
    for (const float half : halfExtents) volume *= static_cast<double>(half);
    return volume;
}

std::vector<UPoint3<float>> usedPositions(const TriangleMesh& mesh) {
    std::vector<bool> isUsed(mesh.positions.size(), false);
    for (const auto& triangle : mesh.triangles) {
        for (const std::int32_t corner : triangle) isUsed[static_cast<std::size_t>(corner)] = true;
    }
    std::vector<UPoint3<float>> used;
    used.reserve(mesh.positions.size());
    for (std::size_t i = 0; i < isUsed.size(); ++i) {
        if (isUsed[i]) used.push_back(mesh.positions[i]);
    }
    return used;
}

TriangleMesh meshOf(const PartBox& box) {
    TriangleMesh mesh;
    for (int corner = 0; corner < 8; ++corner) {
        UVector3<float> p = box.center;
        for (int i = 0; i < 3; ++i) {
            const auto k = static_cast<std::size_t>(i);
            const float half = (corner >> i & 1) != 0 ? box.halfExtents[k] : -box.halfExtents[k];
            p = p + box.axes[k] * half;
        }
        mesh.positions.emplace_back(p.x, p.y, p.z);
    }
    mesh.triangles = {{0, 2, 3}, {0, 3, 1}, {4, 5, 7}, {4, 7, 6}, {0, 1, 5}, {0, 5, 4},
                      {2, 6, 7}, {2, 7, 3}, {0, 4, 6}, {0, 6, 2}, {1, 3, 7}, {1, 7, 5}};
    if (((box.axes[0] * box.axes[1]) | box.axes[2]) < 0.0f) {
        for (auto& triangle : mesh.triangles) std::swap(triangle[1], triangle[2]);
    }
    return mesh;
}

std::optional<double> enclosedVolume(const TriangleMesh& mesh) {
    MeshKernel kernel(mesh.positions, mesh.triangles);
    kernel.UpdateTopo(/*rebuild=*/true, MeshKernel::kEdgeCounts);
    if (kernel.topology().openEdges != 0 || kernel.topology().nonManifoldEdges != 0) {
        return std::nullopt;
    }
    return std::fabs(signedVolumeSixfold(mesh)) / 6.0;
}

}  // namespace App

#include "HostMesh.h"

MeshKernel hostBox(float x, float y, float z) {
    std::vector<UPoint3<float>> corners;
    for (int i = 0; i < 8; ++i) {
        corners.emplace_back((i & 1) != 0 ? x : 0.0f, (i & 2) != 0 ? y : 0.0f,
                             (i & 4) != 0 ? z : 0.0f);
    }
    const std::vector<UMesh<float>::Corners> triangles = {
        {0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4}, {1, 5, 4},
        {2, 6, 3}, {3, 6, 7}, {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    return {corners, triangles};
}

HostResult rankSeeded(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                      std::uint32_t seed) {
    HostResult result;
    OptimizeOrient::seedRandom(seed);
    OrientOptimizer::calculateOrients(&mesh, config, result.axis, result.angle,
                                      &result.orientations, {});
    return result;
}

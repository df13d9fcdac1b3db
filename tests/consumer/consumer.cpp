// Stands a tall box up and asks for its best orientation: it must be laid on its largest side.

#include <OrientOptimizer.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

int main() {
    std::vector<UPoint3<float>> corners;
    for (int i = 0; i < 8; ++i) {
        corners.emplace_back(i & 1 ? 10.0f : 0.0f, i & 2 ? 20.0f : 0.0f, i & 4 ? 50.0f : 0.0f);
    }
    const std::vector<std::array<std::int32_t, 3>> triangles = {
        {0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6}, {0, 1, 4}, {1, 5, 4},
        {2, 6, 3}, {3, 6, 7}, {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    MeshKernel mesh(corners, triangles);

    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> ranked;
    OrientOptimizer::calculateOrients(&mesh, {.supportVolumeWeight = 0}, axis, angle, &ranked, {});

    std::printf("height %.3f, angle %.4f, %zu records\n", static_cast<double>(ranked[0].height),
                static_cast<double>(angle), ranked.size());
    return ranked.size() == 12 && std::fabs(ranked[0].height - 10.0f) < 1e-3f ? 0 : 1;
}

#include <algorithm>
#include <functional>
#include <mutex>
#include <vector>

#include "OrientOptimizer.h"
#include "c/Arrays.h"
#include "c/Call.h"
#include "c/Guard.h"
#include "c/Handles.h"
#include "orient/RankDirections.h"

using namespace Tesk::c;
using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;
using Tesk::orient::Records;

namespace {

Configure configOf(const tesk_rank_settings* settings) {
    Configure config;
    if (settings == nullptr) return config;
    needStruct(settings, "settings");
    config.overhangAngle = settings->overhang_angle_deg;
    config.supportAreaWeight = settings->support_area_weight;
    config.supportVolumeWeight = settings->support_volume_weight;
    config.heightWeight = settings->height_weight;
    config.boxVolumeWeight = settings->box_volume_weight;
    config.computeSupport = settings->compute_support;
    config.baseHeight = settings->base_height;
    return config;
}

/// The kernel's topology and normals are refreshed and read before the first report, not later.
std::vector<OptOrientation> ranked(const tesk_mesh& mesh, const Configure& config, Records records,
                                   const std::function<void(int)>& progress) {
    std::unique_lock refreshing(mesh.refreshing);
    const auto report = [&](int percent) {
        if (refreshing.owns_lock()) refreshing.unlock();
        if (progress) progress(percent);
    };
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptOrientation> found;
    rankDirections(&mesh.kernel, config, records, axis, angle, &found, report);
    return found;
}

tesk_orientation recordOf(const OptOrientation& found) {
    return {.struct_size = sizeof(tesk_orientation),
            .axis = {found.axis.x, found.axis.y, found.axis.z},
            .angle_rad = found.angle,
            .overhang_area = found.overhangArea,
            .support_volume = found.supportVolume,
            .projected_area = found.projectedArea,
            .height = found.height,
            .box_volume = found.boxVolume,
            .score = found.score};
}

tesk_status rank(Records which, const tesk_mesh* mesh, const tesk_rank_settings* settings,
                 const tesk_call* call, tesk_orientation* records, std::int32_t capacity,
                 std::int32_t* count) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        needStructs(records, capacity, "records");
        const Configure config = configOf(settings);
        Call how(call);
        how.run([&] {
            const std::vector<OptOrientation> found = ranked(*mesh, config, which, how.progress());
            const std::size_t room = std::min(found.size(), static_cast<std::size_t>(capacity));
            std::transform(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(room),
                           records, recordOf);
            if (count != nullptr) *count = static_cast<std::int32_t>(found.size());
        });
    });
}

}  // namespace

tesk_status tesk_rank_settings_init(tesk_rank_settings* settings) {
    return guarded([&] {
        needStruct(settings, "settings");
        const Configure config;
        *settings = {.struct_size = sizeof *settings,
                     .overhang_angle_deg = config.overhangAngle,
                     .support_area_weight = config.supportAreaWeight,
                     .support_volume_weight = config.supportVolumeWeight,
                     .height_weight = config.heightWeight,
                     .box_volume_weight = config.boxVolumeWeight,
                     .compute_support = config.computeSupport,
                     .base_height = config.baseHeight};
    });
}

tesk_status tesk_seed(uint32_t seed) {
    return guarded([&] { OptimizeOrient::seedRandom(seed); });
}

tesk_status tesk_rank(const tesk_mesh* mesh, const tesk_rank_settings* settings,
                      const tesk_call* call, tesk_orientation* records, int32_t capacity,
                      int32_t* count) {
    return rank(Records::kSpread, mesh, settings, call, records, capacity, count);
}

tesk_status tesk_rank_all(const tesk_mesh* mesh, const tesk_rank_settings* settings,
                          const tesk_call* call, tesk_orientation* records, int32_t capacity,
                          int32_t* count) {
    return rank(Records::kAll, mesh, settings, call, records, capacity, count);
}

tesk_status tesk_lay_flat(const tesk_mesh* mesh, const tesk_call* call, float matrix[16]) {
    return guarded([&] {
        needHandle(mesh, "mesh");
        need(matrix, "matrix");
        Call how(call);
        how.run([&] {
            // The call keeps the mesh's box in the kernel; a copy shares the mesh itself.
            MeshKernel kernel = mesh->kernel;
            UMatrix4<float> found;
            OrientOptimizer::calculateOrients_minBoundingBox(&kernel, found, how.progress());
            copyTo(matrix, found);
        });
    });
}

#include "commands/OrientSearch.h"

#include <fmt/format.h>
#include <omp.h>

#include "Failure.h"
#include "commands/ProgressBar.h"

namespace App {

std::vector<OptimizeOrient::OptOrientation> rankedOrientations(MeshKernel& mesh,
                                                               const OrientOptions& options,
                                                               WorkShare share) {
    ProgressBar bar(!options.isQuiet);
    if (options.threads > 0) omp_set_num_threads(options.threads);
    OptimizeOrient::seedRandom(options.seed);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
    OrientOptimizer::calculateOrients(&mesh, options.config, axis, angle, &orientations,
                                      progressOn(bar, 100, share));
    return orientations;
}

OptimizeOrient::BuildPoses foundPoses(const MeshKernel& mesh, const OrientOptions& options,
                                      const OptimizeOrient::PoseGoal& goal, WorkShare share) {
    ProgressBar bar(!options.isQuiet);
    if (options.threads > 0) omp_set_num_threads(options.threads);
    return findBuildPoses(mesh, goal, progressOn(bar, 100, share));
}

std::optional<std::string> whyNoArea(const LoadedPart& part) {
    const auto count = static_cast<std::int64_t>(part.mesh.triangles.size());
    if (part.measures.degenerate < count) return std::nullopt;
    return "has no surface: " + (count == 1
                                     ? std::string("its one triangle has no area")
                                     : fmt::format("none of its {} triangles has an area", count));
}

void refuseMissingRank(const OrientOptions& options, std::size_t count, const std::string& where) {
    if (static_cast<std::size_t>(options.rank) <= count) return;
    const std::string listed = count == 1 ? "one pose is" : fmt::format("{} poses are", count);
    throw Failure(ExitCode::kUsage, fmt::format("{}--rank {}: {} listed; see tesk-orient --help",
                                                where, options.rank, listed));
}

}  // namespace App

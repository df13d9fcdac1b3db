#include "commands/OrientCommand.h"

#include <fmt/format.h>
#include <omp.h>

#include <optional>

#include "Failure.h"
#include "TeskDebug/StopWatchLog.h"
#include "commands/CommandSupport.h"
#include "commands/ProgressBar.h"
#include "part/FileBytes.h"
#include "part/MeshChecks.h"
#include "part/MeshOutput.h"
#include "poses/Pose.h"
#include "reports/OrientReport.h"

namespace App {

namespace {

void refuseWithoutArea(const OrientOptions& options, const LoadedPart& part) {
    const auto count = static_cast<std::int64_t>(part.mesh.triangles.size());
    if (part.measures.degenerate < count) return;
    throw InputFailure(
        fmt::format("{}: has no surface: {}", displayName(options.part),
                    count == 1 ? "its one triangle has no area"
                               : fmt::format("none of its {} triangles has an area", count)));
}

std::vector<OptimizeOrient::OptOrientation> rank(MeshKernel& mesh, const OrientOptions& options) {
    ProgressBar bar(!options.isQuiet);
    if (options.threads > 0) omp_set_num_threads(options.threads);
    OptimizeOrient::seedRandom(options.seed);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
    OrientOptimizer::calculateOrients(&mesh, options.config, axis, angle, &orientations,
                                      progressOn(bar));
    return orientations;
}

OptimizeOrient::BuildPoses findPoses(const MeshKernel& mesh, const OrientOptions& options) {
    ProgressBar bar(!options.isQuiet);
    if (options.threads > 0) omp_set_num_threads(options.threads);
    return findBuildPoses(mesh, options.poseGoal, progressOn(bar));
}

void refuseWithoutPose(const OrientOptions& options, const OptimizeOrient::BuildPoses& poses) {
    if (poses.poses.empty()) {
        throw Failure(ExitCode::kNoPose,
                      fmt::format("{}: {}", displayName(options.part), whyNoPose(options, poses)));
    }
    if (static_cast<std::size_t>(options.rank) > poses.poses.size()) {
        throw Failure(
            ExitCode::kUsage,
            fmt::format("--rank {}: {} listed; see tesk-orient --help", options.rank,
                        poses.poses.size() == 1 ? "one pose is"
                                                : fmt::format("{} poses are", poses.poses.size())));
    }
}

void logStages() {
    StopWatchLog::setSink([](const char* label, double seconds) {
        fmt::print(stderr, "{:<18} {:9.3f} ms\n", label, seconds * 1e3);
    });
}

}  // namespace

void run(const OrientOptions& options) {
    std::optional<MeshOutput> output;
    if (!options.output.empty()) output.emplace(options.output);
    if (options.isVerbose) logStages();

    CheckedPart checked = loadPart(options, Purpose::kSupport);
    OrientResult result{std::move(checked.part), {}, {}};
    const TriangleMesh& mesh = result.part.mesh;
    refuseWithoutArea(options, result.part);
    printWarnings(options, result.part);
    const auto chosen = static_cast<std::size_t>(options.rank - 1);
    if (options.goal == Goal::kWeights) {
        result.orientations = rank(checked.kernel, options);
        checked.kernel = MeshKernel();
        if (output) {
            output->write(moved(mesh, poseOf(result.orientations[chosen], mesh, centerOf(mesh),
                                             options.config.baseHeight)));
        }
        printReport(options,
                    options.isJson ? reportJson(options, result) : reportTable(options, result));
        return;
    }
    result.poses = findPoses(checked.kernel, options);
    refuseWithoutPose(options, result.poses);
    if (output) output->write(moved(mesh, poseOf(result.poses.poses[chosen].rotation, mesh)));
    printReport(options, options.isJson ? posesJson(options, result) : posesTable(options, result));
}

}  // namespace App

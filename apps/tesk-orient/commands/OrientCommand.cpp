#include "commands/OrientCommand.h"

#include <fmt/format.h>
#include <omp.h>

#include <optional>
#include <utility>

#include "Failure.h"
#include "TeskDebug/StopWatchLog.h"
#include "commands/CommandSupport.h"
#include "commands/ProgressBar.h"
#include "page/OrientPage.h"
#include "part/FileBytes.h"
#include "part/FileOutput.h"
#include "part/MeshChecks.h"
#include "part/MeshOutput.h"
#include "picture/Picture.h"
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

/// The files that a run is to write, each checked before the work.
struct Outputs {
    explicit Outputs(const OrientOptions& options) {
        if (!options.page.empty()) page.emplace(options.page);
        if (!options.picture.empty()) picture.emplace(options.picture);
        if (!options.output.empty()) mesh.emplace(options.output);
    }

    std::optional<FileOutput> page;
    std::optional<FileOutput> picture;
    std::optional<MeshOutput> mesh;  ///< last: its temporary file is the one that Ctrl-C removes
};

Report byWeights(const OrientOptions& options, CheckedPart checked, Outputs& outputs) {
    OrientResult result{std::move(checked.part), rank(checked.kernel, options), {}};
    checked.kernel = MeshKernel();
    if (outputs.mesh) {
        const auto chosen = static_cast<std::size_t>(options.rank - 1);
        const TriangleMesh& mesh = result.part.mesh;
        outputs.mesh->write(moved(mesh, poseOf(result.orientations[chosen], mesh, centerOf(mesh),
                                               options.config.baseHeight)));
    }
    if (options.isJson) return {{}, reportJson(options, result)};
    return {reportTable(options, result), {}};
}

std::string posesPicture(const OrientOptions& options, const OrientResult& result) {
    const OptimizeOrient::BuildPoses& found = result.poses;
    const bool isSvg = displayName(options.picture.extension()) == ".svg";
    return pictureOf(result.part.mesh, found.asItLies,
                     found.poses[static_cast<std::size_t>(options.rank - 1)], options.rank,
                     options.poseGoal.overhangAngleDeg,
                     isSvg ? PictureFormat::kSvg : PictureFormat::kPng);
}

Report byPoses(const OrientOptions& options, CheckedPart checked, Outputs& outputs) {
    OrientResult result{std::move(checked.part), {}, findPoses(checked.kernel, options)};
    refuseWithoutPose(options, result.poses);
    if (outputs.mesh) {
        const auto chosen = static_cast<std::size_t>(options.rank - 1);
        const TriangleMesh& mesh = result.part.mesh;
        outputs.mesh->write(moved(mesh, poseOf(result.poses.poses[chosen].rotation, mesh)));
    }
    if (outputs.page) outputs.page->write(posesPage(options, result));
    if (outputs.picture) outputs.picture->write(posesPicture(options, result));
    if (options.isJson) return {{}, posesJson(options, result)};
    return {posesTable(options, result), {}};
}

}  // namespace

Report orientReport(const OrientOptions& options, const WarningSink& warn) {
    Outputs outputs(options);
    CheckedPart checked = loadPart(options, Purpose::kSupport);
    refuseWithoutArea(options, checked.part);
    tell(warn, checked.part.warnings);
    const auto make = options.goal == Goal::kWeights ? byWeights : byPoses;
    return make(options, std::move(checked), outputs);
}

void run(const OrientOptions& options) {
    if (options.isVerbose) logStages();
    printReport(options, orientReport(options, warningPrinter(options)));
}

}  // namespace App

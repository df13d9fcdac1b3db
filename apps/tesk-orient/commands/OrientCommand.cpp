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
    OrientResult result{std::move(checked.part), {}};
    const TriangleMesh& mesh = result.part.mesh;
    refuseWithoutArea(options, result.part);
    printWarnings(options, result.part);
    result.orientations = rank(checked.kernel, options);
    checked.kernel = MeshKernel();
    if (output) {
        const auto chosen = static_cast<std::size_t>(options.rank - 1);
        output->write(moved(mesh, poseOf(result.orientations[chosen], mesh, centerOf(mesh),
                                         options.config.baseHeight)));
    }
    printReport(options,
                options.isJson ? reportJson(options, result) : reportTable(options, result));
}

}  // namespace App

#include "OrientCommand.h"

#include <fmt/format.h>
#include <omp.h>

#include <cstdio>
#include <optional>

#include "Failure.h"
#include "FileBytes.h"
#include "Interrupt.h"
#include "MeshChecks.h"
#include "MeshOutput.h"
#include "Pose.h"
#include "ProgressBar.h"
#include "Report.h"
#include "TeskDebug/Exception.h"
#include "TeskDebug/StopWatchLog.h"

namespace App {

namespace {

void printWarnings(const Options& options, const Warnings& warnings) {
    if (options.isQuiet) return;
    for (const Warning& warning : warnings) {
        fmt::print(stderr, "tesk-orient: warning: {}: {}\n", displayName(options.part),
                   warning.text);
    }
}

void refuseWithoutArea(const Options& options, const TriangleMesh& mesh) {
    const auto count = static_cast<std::int64_t>(mesh.triangles.size());
    if (countDegenerate(mesh) < count) return;
    throw InputFailure(
        fmt::format("{}: has no surface: {}", displayName(options.part),
                    count == 1 ? "its one triangle has no area"
                               : fmt::format("none of its {} triangles has an area", count)));
}

void stopIfInterrupted() {
    if (Interrupt::isRequested()) throw Tesk::AbortException("Aborting...");
}

std::vector<OptimizeOrient::OptOrientation> rank(MeshKernel& mesh, const Options& options) {
    ProgressBar bar(!options.isQuiet);
    if (options.threads > 0) omp_set_num_threads(options.threads);
    OptimizeOrient::seedRandom(options.seed);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
    OrientOptimizer::calculateOrients(&mesh, options.config, axis, angle, &orientations,
                                      [&](int percent) {
                                          stopIfInterrupted();
                                          bar.show(percent);
                                      });
    return orientations;
}

void logStages() {
    StopWatchLog::setSink([](const char* label, double seconds) {
        fmt::print(stderr, "{:<18} {:9.3f} ms\n", label, seconds * 1e3);
    });
}

}  // namespace

void orient(const Options& options) {
    std::optional<MeshOutput> output;
    if (!options.output.empty()) output.emplace(options.output);
    if (options.isVerbose) logStages();

    OrientResult result{readMeshFile(options.part, options.unit), {}};
    stopIfInterrupted();
    const TriangleMesh& mesh = result.part.mesh;
    refuseWithoutArea(options, mesh);
    MeshKernel kernel(mesh.positions, mesh.triangles);
    kernel.UpdateTopo(/*rebuild=*/true, MeshKernel::kEdgeCounts);
    for (Warning& warning : checkMesh(mesh, kernel.topology(), result.part.unit)) {
        result.part.warnings.push_back(std::move(warning));
    }
    printWarnings(options, result.part.warnings);

    result.orientations = rank(kernel, options);
    if (output) {
        const auto chosen = static_cast<std::size_t>(options.rank - 1);
        output->write(
            moved(mesh, poseOf(result.orientations[chosen], mesh, options.config.baseHeight)));
    }
    const std::string report =
        options.isJson ? reportJson(options, result) : reportTable(options, result);
    if (std::fputs(report.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        throw Failure(ExitCode::kOutput, "cannot write to standard output");
    }
    if (output && !options.isJson) fmt::print("Written: {}\n", displayName(options.output));
}

}  // namespace App

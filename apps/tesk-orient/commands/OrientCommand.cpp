#include "commands/OrientCommand.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "Failure.h"
#include "TeskDebug/StopWatchLog.h"
#include "commands/OrientOutputs.h"
#include "commands/OrientPlate.h"
#include "commands/OrientSearch.h"
#include "page/OrientPage.h"
#include "part/MeshOutput.h"
#include "part/PathText.h"
#include "plate/PlateOutput.h"
#include "poses/Pose.h"
#include "reports/OrientReport.h"

namespace App {

namespace {

void logStages() {
    StopWatchLog::setSink([](const char* label, double seconds) {
        fmt::print(stderr, "{:<18} {:9.3f} ms\n", label, seconds * 1e3);
    });
}

/// Writes the part as a matrix turns it.
void write(MeshOutput& output, const OrientOptions& options, const TriangleMesh& mesh,
           const UMatrix4<float>& pose, std::optional<double> height) {
    if (canKeepPackage(output, options)) {
        writeTogether(output, options, mesh, pose, height);
    } else {
        output.write(moved(mesh, pose));
    }
}

Report byWeights(const OrientOptions& options, CheckedPart checked, OrientOutputs& outputs) {
    OrientResult result{std::move(checked.part), rankedOrientations(checked.kernel, options), {}};
    checked.kernel = MeshKernel();
    if (outputs.mesh) {
        const auto chosen = static_cast<std::size_t>(options.rank - 1);
        const TriangleMesh& mesh = result.part.mesh;
        write(*outputs.mesh, options, mesh,
              poseOf(result.orientations[chosen], mesh, centerOf(mesh), options.config.baseHeight),
              heightOf(options));
    }
    if (options.isJson) return {{}, reportJson(options, result)};
    return {reportTable(options, result), {}};
}

Report byPoses(const OrientOptions& options, CheckedPart checked, OrientOutputs& outputs) {
    OrientResult result{
        std::move(checked.part), {}, foundPoses(checked.kernel, options, options.poseGoal)};
    if (result.poses.poses.empty()) {
        throw Failure(ExitCode::kNoPose,
                      displayName(options.part) + ": " + whyNoPose(options, result.poses));
    }
    refuseMissingRank(options, result.poses.poses.size(), "");
    if (outputs.mesh) {
        const auto chosen = static_cast<std::size_t>(options.rank - 1);
        const TriangleMesh& mesh = result.part.mesh;
        write(*outputs.mesh, options, mesh, poseOf(result.poses.poses[chosen].rotation, mesh), 0.0);
    }
    if (outputs.page) outputs.page->write(posesPage(options, result));
    if (outputs.picture) outputs.picture->write(posesPicture(options, result));
    if (options.isJson) return {{}, posesJson(options, result)};
    return {posesTable(options, result), {}};
}

}  // namespace

Report orientReport(const OrientOptions& options, const WarningSink& warn) {
    OrientOutputs outputs(options);
    if (isByObject(options)) return orientPlate(options, warn, outputs);
    CheckedPart checked = loadPart(options, Purpose::kSupport);
    if (const auto why = whyNoArea(checked.part)) {
        throw InputFailure(displayName(options.part) + ": " + *why);
    }
    tell(warn, checked.part.warnings);
    const auto make = options.goal == Goal::kWeights ? byWeights : byPoses;
    return make(options, std::move(checked), outputs);
}

void run(const OrientOptions& options) {
    if (options.isVerbose) logStages();
    const Report report = orientReport(options, warningPrinter(options));
    if (options.isVerbose) fmt::print(stderr, "{}", report.notes);
    printReport(options, report);
}

}  // namespace App

#include "commands/OrientCommand.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "Failure.h"
#include "TeskDebug/StopWatchLog.h"
#include "commands/CommandSupport.h"
#include "commands/OrientPlate.h"
#include "commands/OrientSearch.h"
#include "page/OrientPage.h"
#include "part/FileBytes.h"
#include "part/FileOutput.h"
#include "part/MeshChecks.h"
#include "part/MeshOutput.h"
#include "picture/Picture.h"
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

std::string posesPicture(const OrientOptions& options, const OrientResult& result) {
    const OptimizeOrient::BuildPoses& found = result.poses;
    const bool isSvg = displayName(options.picture.extension()) == ".svg";
    return pictureOf(result.part.mesh, found.asItLies,
                     found.poses[static_cast<std::size_t>(options.rank - 1)], options.rank,
                     options.poseGoal.overhangAngleDeg,
                     isSvg ? PictureFormat::kSvg : PictureFormat::kPng);
}

Report byPoses(const OrientOptions& options, CheckedPart checked, Outputs& outputs) {
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

/// Pages and pictures show one part.
void refuseDrawingPlates(const OrientOptions& options) {
    const char* const option = !options.page.empty()      ? "--report"
                               : !options.picture.empty() ? "--picture"
                                                          : nullptr;
    if (option == nullptr) return;
    throw Failure(ExitCode::kUsage,
                  fmt::format("{} shows one part; add --together to take all of {} as one", option,
                              displayName(options.part)));
}

}  // namespace

Report orientReport(const OrientOptions& options, const WarningSink& warn) {
    Outputs outputs(options);
    if (isByObject(options)) {
        refuseDrawingPlates(options);
        return orientPlate(options, warn, outputs.mesh ? &*outputs.mesh : nullptr);
    }
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

#include "commands/LayFlatCommand.h"

#include <optional>

#include "OrientOptimizer.h"
#include "commands/CommandSupport.h"
#include "part/MeshOutput.h"
#include "poses/Pose.h"
#include "reports/LayFlatReport.h"

namespace App {

namespace {

/// Where the search stops reporting, as only faces count as steps.
constexpr int kEnd = 40;

UMatrix4<float> layFlat(const LayFlatOptions& options, const TriangleMesh& mesh,
                        MeshKernel& kernel) {
    ProgressBar bar(!options.isQuiet);
    UMatrix4<float> matrix;
    OrientOptimizer::calculateOrients_minBoundingBox(&kernel, matrix, progressOn(bar, kEnd));
    return setDown(mesh, matrix, 0.0f);
}

}  // namespace

Report layFlatReport(const LayFlatOptions& options, const WarningSink& warn) {
    std::optional<MeshOutput> output;
    if (!options.output.empty()) output.emplace(options.output);
    CheckedPart checked = loadPart(options, Purpose::kBox);
    LayFlatResult result{std::move(checked.part), {}, {}};
    tell(warn, result.part.warnings);
    result.matrix = layFlat(options, result.part.mesh, checked.kernel);
    result.placed = moved(result.part.mesh, result.matrix);
    stopIfInterrupted();
    if (output) output->write(result.placed);
    if (options.isJson) return {{}, layFlatReportJson(options, result)};
    return {layFlatReportTable(options, result), {}};
}

void run(const LayFlatOptions& options) {
    printReport(options, layFlatReport(options, warningPrinter(options)));
}

}  // namespace App

#include "commands/BoxCommand.h"

#include <fmt/format.h>

#include <optional>

#include "Failure.h"
#include "MinBoundingBox.h"
#include "commands/CommandSupport.h"
#include "part/FileBytes.h"
#include "part/MeshOutput.h"
#include "reports/BoxReport.h"

namespace App {

namespace {

/// Where the search for the least volume stops reporting, as only faces count as steps.
constexpr int kVolumeEnd = 40;

OrientedBox3 search(const BoxOptions& options, const std::vector<UPoint3<float>>& points) {
    const int count = static_cast<int>(points.size());
    ProgressBar bar(!options.isQuiet);
    MinBoundingBox calculator(threadCountOf(options));
    const bool isVolume = options.criterion == Criterion::kVolume;
    calculator.setCallBackFunction(progressOn(bar, isVolume ? kVolumeEnd : 100));
    switch (options.criterion) {
        case Criterion::kVolume:
            return calculator(count, points.data());
        case Criterion::kBaseArea:
            return calculator.minBaseAreaBox(count, points.data());
        case Criterion::kBaseHeight:
            return calculator.minBaseAreaAndHeightBox(count, points.data());
        case Criterion::kAroundAxis:
            return calculator.minBaseAreaBoxAroundAxis(count, points.data(), options.axis);
        case Criterion::kPrincipal:
            break;
    }
    return MinBoundingBox::generateOBB(points.data(), count);
}

/// The axis as the library wants it: along Z it takes (0, 0, 1) only.
UVector3<float> usableAxis(const UVector3<float>& axis) {
    const UVector3<float> normal = axis.GetNormal();
    return normal.x == 0.0f && normal.y == 0.0f ? UVector3<float>(0, 0, 1) : axis;
}

PartBox boxOf(BoxOptions options, const TriangleMesh& mesh) {
    options.axis = usableAxis(options.axis);
    const OrientedBox3 found = search(options, mesh.positions);
    if (found.axis[0] == UVector3<float>(1, 1, 1)) {
        throw Failure(ExitCode::kInternal,
                      fmt::format("{}: no box was found", displayName(options.part)));
    }
    return readAs(found,
                  options.criterion == Criterion::kPrincipal ? Lengths::kFull : Lengths::kHalf);
}

}  // namespace

Report boxReport(const BoxOptions& options, const WarningSink& warn) {
    std::optional<MeshOutput> output;
    if (!options.output.empty()) output.emplace(options.output);
    BoxResult result{loadPart(options, Purpose::kBox).part, {}, {}};
    tell(warn, result.part.warnings);
    result.box = boxOf(options, result.part.mesh);
    result.partVolume = enclosedVolume(result.part.measures, result.part.topology);
    stopIfInterrupted();
    if (output) output->write(meshOf(result.box));
    if (options.isJson) return {{}, boxReportJson(options, result)};
    return {boxReportTable(options, result), {}};
}

void run(const BoxOptions& options) {
    printReport(options, boxReport(options, warningPrinter(options)));
}

}  // namespace App

#include "commands/LayFlatCommand.h"

#include <array>
#include <optional>

#include "OrientOptimizer.h"
#include "commands/CommandSupport.h"
#include "commands/PlateWork.h"
#include "part/MeshOutput.h"
#include "plate/ItemTurn.h"
#include "poses/Pose.h"
#include "reports/LayFlatReport.h"

namespace App {

namespace {

/// Where the search stops reporting, as only faces count as steps.
constexpr int kEnd = 40;

UMatrix4<float> layFlat(const LayFlatOptions& options, MeshKernel& kernel, WorkShare share = {}) {
    ProgressBar bar(!options.isQuiet);
    UMatrix4<float> matrix;
    OrientOptimizer::calculateOrients_minBoundingBox(&kernel, matrix, progressOn(bar, kEnd, share));
    return matrix;
}

/// The four rotations that lay a shape flat, by its symmetric box.
PoseRotations flatRotations(const UMatrix4<float>& matrix) {
    PoseRotations rotations = rotationsOf(matrix, Spins::kHalves);
    for (std::size_t i = 0; i < 2; ++i) {
        UMatrix4<double> upsideDown;
        upsideDown.at(1, 1) = upsideDown.at(2, 2) = -1.0;
        rotations.push_back(rotations[i] * upsideDown);
    }
    return rotations;
}

/// Whether a part lies flat as it is: in a box along the axes that is as small, with its sides in
/// the right order.
bool liesFlat(const TriangleMesh& lying, const std::array<double, 3>& flat) {
    constexpr double kSame = 1e-5;
    const std::array<double, 3> size = sizeOf(lying);
    const double least = flat[0] * flat[1] * flat[2];
    const double slack = kSame * flat[0];
    return size[0] >= size[1] - slack && size[1] >= size[2] - slack &&
           size[0] * size[1] * size[2] <= least * (1.0 + kSame);
}

/// Turns a shape's items, and puts the one that its first item makes into the report.
void layFlat(PlateWork& work, const Shape& shape, const LayFlatOptions& options, WorkShare share) {
    CheckedPart checked = work.check(shape, Purpose::kBox);
    const PoseRotations targets = flatRotations(layFlat(options, checked.kernel, share));
    const auto flat = sizeOf(moved(partMeshOf(checked.part.mesh), targets.front()));
    for (const std::size_t item : shape.items) {
        const UMatrix4<double>& present = work.place(item).rotation;
        const UMatrix4<double> nearest = nearestTo(present, targets);
        const bool mayStay = !isSameRotation(present, nearest) &&
                             liesFlat(moved(partMeshOf(checked.part.mesh), present), flat);
        work.turn(item, mayStay ? present : nearest);
    }
    LayFlatResult result{std::move(checked.part), {}, {}};
    result.part.mesh = work.lyingMesh(shape);
    const UMatrix4<float> turn = toFloat(work.places()[shape.items.front()].turn);
    result.matrix = inPlace(poseOf(turn, result.part.mesh), result.part.mesh);
    result.placed = moved(result.part.mesh, result.matrix);
    work.addSection(shape, result.part,
                    {options.isJson ? "" : layFlatText(result),
                     options.isJson ? layFlatMembers(result) : Json::object()});
}

Report layFlatPlate(const LayFlatOptions& options, const WarningSink& warn, MeshOutput* output) {
    PlateWork work(options, warn);
    WorkShare share{0, static_cast<int>(work.shapes().size())};
    for (const Shape& shape : work.shapes()) {
        layFlat(work, shape, options, share);
        ++share.index;
    }
    work.checkPlaces({});
    stopIfInterrupted();
    if (output != nullptr) work.write(*output);
    return work.report({"lay-flat", {}, layFlatConventions()});
}

Report layFlatPart(const LayFlatOptions& options, const WarningSink& warn, MeshOutput* output) {
    CheckedPart checked = loadPart(options, Purpose::kBox);
    LayFlatResult result{std::move(checked.part), {}, {}};
    tell(warn, result.part.warnings);
    result.matrix = setDown(result.part.mesh, layFlat(options, checked.kernel), 0.0f);
    result.placed = moved(result.part.mesh, result.matrix);
    stopIfInterrupted();
    if (output != nullptr && canKeepPackage(*output, options)) {
        writeTogether(*output, options, result.part.mesh, result.matrix, 0.0);
    } else if (output != nullptr) {
        output->write(result.placed);
    }
    if (options.isJson) return {{}, layFlatReportJson(options, result)};
    return {layFlatReportTable(options, result), {}};
}

}  // namespace

Report layFlatReport(const LayFlatOptions& options, const WarningSink& warn) {
    std::optional<MeshOutput> output;
    if (!options.output.empty()) output.emplace(options.output);
    const auto make = isByObject(options) ? layFlatPlate : layFlatPart;
    return make(options, warn, output ? &*output : nullptr);
}

void run(const LayFlatOptions& options) {
    printReport(options, layFlatReport(options, warningPrinter(options)));
}

}  // namespace App

#include "commands/BoxCommand.h"

#include <fmt/format.h>

#include <optional>

#include "Failure.h"
#include "MinBoundingBox.h"
#include "commands/CommandSupport.h"
#include "commands/PlateWork.h"
#include "part/MeshOutput.h"
#include "part/PathText.h"
#include "plate/Polar.h"
#include "reports/BoxReport.h"

namespace App {

namespace {

/// Where the search for the least volume stops reporting, as only faces count as steps.
constexpr int kVolumeEnd = 40;

OrientedBox3 search(const BoxOptions& options, const std::vector<UPoint3<float>>& points,
                    WorkShare share) {
    const int count = static_cast<int>(points.size());
    ProgressBar bar(!options.isQuiet);
    MinBoundingBox calculator(threadCountOf(options));
    const bool isVolume = options.criterion == Criterion::kVolume;
    calculator.setCallBackFunction(progressOn(bar, isVolume ? kVolumeEnd : 100, share));
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

PartBox boxOf(BoxOptions options, const TriangleMesh& mesh, WorkShare share = {}) {
    options.axis = usableAxis(options.axis);
    const OrientedBox3 found = search(options, mesh.positions, share);
    if (found.axis[0] == UVector3<float>(1, 1, 1)) {
        throw Failure(ExitCode::kInternal,
                      fmt::format("{}: no box was found", displayName(options.part)));
    }
    return readAs(found,
                  options.criterion == Criterion::kPrincipal ? Lengths::kFull : Lengths::kHalf);
}

/// A box around the first item of a shape, moved to another one.
TriangleMesh movedTo(const ItemPlace& item, const ItemPlace& first, const PartBox& box) {
    UMatrix4<double> way = transposed(first.rotation) * item.rotation;
    const auto translationOf = [](const UMatrix4<double>& m) {
        return UPoint3<double>(m.at(3, 0), m.at(3, 1), m.at(3, 2));
    };
    const UVector3<double> shift =
        translationOf(item.toPlate) - translationOf(first.toPlate) * linearOf(way);
    for (int col = 0; col < 3; ++col)
        way.at(3, col) = UPoint3<double>(shift.x, shift.y, shift.z)[col];
    return moved(partMeshOf(meshOf(box)), way);
}

void append(TriangleMesh& all, const TriangleMesh& mesh) {
    const auto first = static_cast<std::int32_t>(all.positions.size());
    all.positions.insert(all.positions.end(), mesh.positions.begin(), mesh.positions.end());
    for (const auto& [a, b, c] : mesh.triangles) {
        all.triangles.push_back({a + first, b + first, c + first});
    }
}

Report boxesOnPlate(const BoxOptions& options, const WarningSink& warn, MeshOutput* output) {
    PlateWork work(options, warn);
    TriangleMesh boxes;
    WorkShare share{0, static_cast<int>(work.shapes().size())};
    for (const Shape& shape : work.shapes()) {
        BoxResult result{work.check(shape, Purpose::kBox).part, {}, {}};
        result.partVolume = enclosedVolume(result.part.measures, result.part.topology);
        result.part.mesh = work.lyingMesh(shape);
        result.box = boxOf(options, result.part.mesh, share);
        work.addSection(shape, result.part,
                        {options.isJson ? "" : boxText(options, result),
                         options.isJson ? boxMembers(result) : Json::object()});
        for (const std::size_t item : shape.items) {
            append(boxes, movedTo(work.place(item), work.place(shape.items.front()), result.box));
        }
        ++share.index;
    }
    stopIfInterrupted();
    if (output != nullptr) output->write(boxes);
    return work.report({"box", settingsOf(options), boxConventions()});
}

Report boxOfPart(const BoxOptions& options, const WarningSink& warn, MeshOutput* output) {
    BoxResult result{loadPart(options, Purpose::kBox).part, {}, {}};
    tell(warn, result.part.warnings);
    result.box = boxOf(options, result.part.mesh);
    result.partVolume = enclosedVolume(result.part.measures, result.part.topology);
    stopIfInterrupted();
    if (output != nullptr) output->write(meshOf(result.box));
    if (options.isJson) return {{}, boxReportJson(options, result)};
    return {boxReportTable(options, result), {}};
}

}  // namespace

Report boxReport(const BoxOptions& options, const WarningSink& warn) {
    std::optional<MeshOutput> output;
    if (!options.output.empty()) output.emplace(options.output);
    const auto make = isByObject(options) ? boxesOnPlate : boxOfPart;
    return make(options, warn, output ? &*output : nullptr);
}

void run(const BoxOptions& options) {
    printReport(options, boxReport(options, warningPrinter(options)));
}

}  // namespace App

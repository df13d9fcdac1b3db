#include "commands/OrientPlate.h"

#include <fmt/format.h>

#include <deque>
#include <utility>

#include "Failure.h"
#include "commands/OrientSearch.h"
#include "commands/PlateWork.h"
#include "page/OrientPage.h"
#include "page/Page.h"
#include "part/PathText.h"
#include "plate/ItemTurn.h"
#include "plate/PresentPose.h"
#include "plate/SeenPoses.h"
#include "reports/OrientReport.h"

namespace App {

namespace {

using OptimizeOrient::BuildPoses;
using OptimizeOrient::OptOrientation;
using OptimizeOrient::PoseGoal;

/// Work on a plate's shapes, one after the other.
class PlateOrienting {
 public:
    PlateOrienting(const OrientOptions& options, const WarningSink& warn, OrientOutputs& outputs)
        : m_options(options),
          m_outputs(outputs),
          m_work(options, warn),
          m_page{displayName(options.part.filename()), settingsOf(options), Json::array(), {}} {}

    Report run();

 private:
    void orient(const Shape& shape);
    void byWeights(const Shape& shape, CheckedPart checked);
    void byPoses(const Shape& shape, CheckedPart checked);
    void addSection(const Shape& shape, OrientResult result);
    void addToPage(const Shape& shape, OrientResult& result);
    std::string notes() const;

    WorkShare share() const {
        return {static_cast<int>(m_done), static_cast<int>(m_work.shapes().size())};
    }
    const UMatrix4<double>& rotationOf(std::size_t item) const {
        return m_work.place(item).rotation;
    }

    const OrientOptions& m_options;
    OrientOutputs& m_outputs;
    PlateWork m_work;
    std::size_t m_done = 0;     ///< shapes
    std::size_t m_present = 0;  ///< present poses that were measured
    Warnings m_warnings;        ///< about the shape at work
    PageInput m_page;
    std::deque<TriangleMesh> m_pageMeshes;
    std::string m_withoutPose;  ///< what the shapes without a pose have to say
};

void PlateOrienting::byWeights(const Shape& shape, CheckedPart checked) {
    OrientResult result{{}, rankedOrientations(checked.kernel, m_options, share()), {}};
    const OptOrientation& chosen =
        result.orientations[static_cast<std::size_t>(m_options.rank - 1)];
    const PoseRotations targets = rotationsOf(App::rotationOf(chosen), Spins::kQuarters);
    for (const std::size_t item : shape.items) {
        m_work.turn(item, nearestTo(rotationOf(item), targets), heightOf(m_options));
    }
    const UMatrix4<double>& present = rotationOf(shape.items.front());
    for (OptOrientation& o : result.orientations) o = seenFrom(present, o);
    addSection(shape, std::move(result));
}

void PlateOrienting::byPoses(const Shape& shape, CheckedPart checked) {
    const PoseGoal goal = goalFor(m_options.poseGoal, shape.stretch);
    OrientResult result{{}, {}, foundPoses(checked.kernel, m_options, goal, share())};
    if (result.poses.poses.empty()) {
        m_withoutPose +=
            fmt::format("{}{}: {}", m_withoutPose.empty() ? "" : "; ",
                        nameOf(m_work.plate(), shape.object), whyNoPose(m_options, result.poses));
        return;
    }
    refuseMissingRank(m_options, result.poses.poses.size(),
                      nameOf(m_work.plate(), shape.object) + ": ");
    PresentPoses present(checked.kernel, goal, result.poses.poses.front().cost.total());
    const auto& chosen = result.poses.poses[static_cast<std::size_t>(m_options.rank - 1)];
    const PoseRotations targets = rotationsOf(chosen.rotation, spinsOf(goal, chosen));
    bool firstStays = false;
    for (const std::size_t item : shape.items) {
        const UMatrix4<double>& rotation = rotationOf(item);
        const UMatrix4<double> nearest = nearestTo(rotation, targets);
        const bool mayStay =
            m_options.rank == 1 && !isSameRotation(rotation, nearest) && present.mayStay(rotation);
        m_work.turn(item, mayStay ? rotation : nearest);
        firstStays = firstStays || (mayStay && item == shape.items.front());
    }
    const UMatrix4<double>& first = rotationOf(shape.items.front());
    result.poses = seenFrom(first, goal, std::move(result.poses), present.measured(first));
    if (firstStays) putFirst(result.poses, result.poses.asItLies);
    m_present += present.count();
    addSection(shape, std::move(result));
}

/// The result's poses are seen from the shape's first item.
void PlateOrienting::addSection(const Shape& shape, OrientResult result) {
    result.part.mesh = m_work.lyingMesh(shape);
    result.keepsPlace = true;
    const bool isByWeights = m_options.goal == Goal::kWeights;
    PlateSection section;
    if (m_options.isJson) {
        section.members =
            isByWeights ? rankingMembers(m_options, result) : posesMembers(m_options, result);
    } else {
        section.table = isByWeights ? rankingText(m_options, result) : posesText(m_options, result);
    }
    m_work.addSection(shape, result.part, section);
    if (isByWeights) return;
    if (m_outputs.picture) m_outputs.picture->write(posesPicture(m_options, result));
    if (m_outputs.page) addToPage(shape, result);
}

void PlateOrienting::addToPage(const Shape& shape, OrientResult& result) {
    Json found = posesMembers(m_options, result);
    result.part.warnings = m_warnings;
    found["input"] = inputValue(m_options, result.part);
    const auto copies = static_cast<int>(shape.items.size());
    std::string reason = reasonFor(m_options, result.poses);
    const TriangleMesh& mesh = m_pageMeshes.emplace_back(std::move(result.part.mesh));
    const Tesk::PlateObject& object = m_work.plate().plate.objects[shape.object];
    const std::string name =
        object.name.empty() ? nameOf(m_work.plate(), shape.object) : object.name;
    m_page.objects.push_back(
        {name, object.partNumber, copies, std::move(reason), std::move(found), &mesh});
}

void PlateOrienting::orient(const Shape& shape) {
    CheckedPart checked = m_work.check(shape, Purpose::kSupport);
    if (const auto why = whyNoArea(checked.part)) {
        m_work.fail(ExitCode::kInput, nameOf(m_work.plate(), shape.object) + " " + *why);
    }
    m_warnings = checked.part.warnings;
    // The report takes the mesh as the first item lies.
    checked.part.mesh = {};
    if (m_options.goal == Goal::kWeights) {
        byWeights(shape, std::move(checked));
    } else {
        byPoses(shape, std::move(checked));
    }
    ++m_done;
}

std::string PlateOrienting::notes() const {
    std::size_t items = 0;
    for (const Shape& shape : m_work.shapes()) items += shape.items.size();
    const auto& plate = m_work.plate().plate;
    return fmt::format(
        "Shapes measured: {}, for {} of {} objects and {} of {} items; poses as they lie: {}\n",
        m_done, takenObjects(m_work.plate()), plate.objects.size(), items, plate.items.size(),
        m_present);
}

Report PlateOrienting::run() {
    if (m_outputs.picture && m_work.shapes().size() != 1) {
        throw Failure(ExitCode::kUsage,
                      "--picture draws one part: take it by --object, or all --together");
    }
    for (const Shape& shape : m_work.shapes()) orient(shape);
    if (!m_withoutPose.empty()) m_work.fail(ExitCode::kNoPose, m_withoutPose);
    const bool isByWeights = m_options.goal == Goal::kWeights;
    m_work.checkPlaces(isByWeights ? UVector3<float>() : m_options.poseGoal.buildVolume);
    stopIfInterrupted();
    if (m_outputs.mesh) m_work.write(*m_outputs.mesh);
    if (m_outputs.page) {
        m_page.warnings = m_work.plateWarnings();
        m_outputs.page->write(pageOf(m_page));
    }
    Report report = m_work.report({"orient", settingsOf(m_options), conventionsOf(m_options)});
    report.notes = notes();
    return report;
}

}  // namespace

std::optional<double> heightOf(const OrientOptions& options) {
    if (options.goal != Goal::kWeights) return 0.0;
    if (!(options.config.baseHeight > -1.0f)) return std::nullopt;
    return static_cast<double>(options.config.baseHeight);
}

Report orientPlate(const OrientOptions& options, const WarningSink& warn, OrientOutputs& outputs) {
    return PlateOrienting(options, warn, outputs).run();
}

}  // namespace App

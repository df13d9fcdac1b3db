#include "poses/Pose.h"
#include "poses/Turn.h"
#include "reports/OrientReport.h"
#include "reports/ReportText.h"

namespace App {

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::PoseGoal;
using OptimizeOrient::PoseMeasures;

Json measuresOf(const PoseMeasures& m) {
    return {{"heightMm", m.height},
            {"footprintMm", {m.footprintX, m.footprintY}},
            {"supportVolumeMm3", m.supportVolume},
            {"overhangAreaMm2", m.overhangArea},
            {"overhangAreaOnPartMm2", m.overhangAreaOnPart},
            {"contactAreaMm2", m.contactArea},
            {"contactIslands", m.contactIslands},
            {"tiltMarginDeg", m.tiltMarginDeg},
            {"liesFlat", m.liesFlat},
            {"stands", m.stands}};
}

Json poseValue(const OrientResult& result, const BuildPose& pose) {
    const TriangleMesh& mesh = result.part.mesh;
    const UMatrix4<float> matrix = poseOf(pose.rotation, mesh);
    Json value = measuresOf(pose.measures);
    value["cost"] = {{"totalMm", pose.cost.total()},
                     {"supportVolumeMm", pose.cost.supportVolume},
                     {"overhangAreaMm", pose.cost.overhangArea},
                     {"heightMm", pose.cost.height}};
    value["supportFilamentMm"] = pose.cost.supportFilament();
    value["up"] = valueOf(
        UVector3<float>(pose.rotation.at(0, 2), pose.rotation.at(1, 2), pose.rotation.at(2, 2)));
    value["turn"] = valueOf(turnIn(pose.rotation));
    value["matrix"] = valueOf(result.keepsPlace ? inPlace(matrix, mesh) : matrix);
    return value;
}

}  // namespace

Json poseSettings(const OrientOptions& options) {
    const PoseGoal& goal = options.poseGoal;
    Json keepOff = Json::array();
    for (const OptimizeOrient::KeepOff& rule : goal.keepOff) {
        const float angle = rule.angleDeg < 0.0f ? goal.overhangAngleDeg : rule.angleDeg;
        keepOff.push_back({{"direction", valueOf(rule.direction)}, {"angleDeg", angle}});
    }
    return {{"goal", nameOf(options.goal)},
            {"overhangAngleDeg", goal.overhangAngleDeg},
            {"supportVolumeCost", goal.supportVolumeCost},
            {"overhangAreaCost", goal.overhangAreaCost},
            {"heightCost", goal.heightCost},
            {"buildVolumeMm", valueOf(goal.buildVolume)},
            {"keepOff", keepOff}};
}

Json poseConventions() {
    return {{"matrix", kMatrixConvention},
            {"up", "the direction of the part that the pose turns to +Z"},
            {"cost", "mm of filament; lower is better"},
            {"supportFilamentMm", "what the support is predicted to take, filament of 1.75 mm"}};
}

Json posesMembers(const OrientOptions& options, const OrientResult& result) {
    const BuildPoses& found = result.poses;
    Json poses = Json::array();
    int rank = 0;
    for (const BuildPose& pose : found.poses) {
        Json value = {{"rank", ++rank}};
        value.update(poseValue(result, pose));
        poses.push_back(value);
    }
    return {{"chosenRank", options.rank},
            {"noneStands", found.noneStands},
            {"passedOver",
             {{"keptOff", found.passedOver.keptOff},
              {"tooLarge", found.passedOver.tooLarge},
              {"littleContact", found.passedOver.littleContact},
              {"cannotStand", found.passedOver.cannotStand}}},
            {"asItLies", poseValue(result, found.asItLies)},
            {"poses", poses}};
}

Json posesJson(const OrientOptions& options, const OrientResult& result) {
    Json report = {{"schema", "tesk-orient/orient/2"},
                   {"input", inputValue(options, result.part)},
                   {"settings", settingsOf(options)},
                   {"conventions", conventionsOf(options)}};
    report.update(posesMembers(options, result));
    return report;
}

}  // namespace App

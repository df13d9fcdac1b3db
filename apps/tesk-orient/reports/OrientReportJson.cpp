#include "poses/Pose.h"
#include "reports/OrientReport.h"
#include "reports/ReportText.h"

namespace App {

namespace {

using OptimizeOrient::OptOrientation;

Json weightSettings(const OrientOptions& options) {
    const OptimizeOrient::Configure& config = options.config;
    return {{"overhangAngleDeg", config.overhangAngle},
            {"heightWeight", config.heightWeight},
            {"supportVolumeWeight", config.supportVolumeWeight},
            {"supportAreaWeight", config.supportAreaWeight},
            {"boxVolumeWeight", config.boxVolumeWeight},
            {"computeSupport", config.computeSupport != 0},
            {"baseHeightMm", config.baseHeight},
            {"seed", options.seed}};
}

Json recordOf(const OrientOptions& options, const OrientResult& result,
              const UPoint3<float>& center, const OptOrientation& o, int rank) {
    const TriangleMesh& mesh = result.part.mesh;
    const UMatrix4<float> pose = poseOf(o, mesh, center, options.config.baseHeight);
    return {{"rank", rank},
            {"score", o.score},
            {"axis", valueOf(o.axis.GetNormal())},
            {"angleRad", o.angle},
            {"angleDeg", degreesOf(o.angle)},
            {"up", valueOf(upOf(o))},
            {"matrix", valueOf(result.keepsPlace ? inPlace(pose, mesh) : pose)},
            {"heightMm", o.height},
            {"supportVolumeMm3", o.supportVolume},
            {"overhangAreaMm2", o.overhangArea},
            {"projectedAreaMm2", o.projectedArea},
            {"boxVolumeMm3", o.boxVolume}};
}

}  // namespace

Json rankingMembers(const OrientOptions& options, const OrientResult& result) {
    Json records = Json::array();
    const UPoint3<float> center = centerOf(result.part.mesh);
    int rank = 0;
    for (const OptOrientation& o : result.orientations) {
        records.push_back(recordOf(options, result, center, o, ++rank));
    }
    return {{"chosenRank", options.rank}, {"orientations", records}};
}

Json settingsOf(const OrientOptions& options) {
    return options.goal == Goal::kWeights ? weightSettings(options) : poseSettings(options);
}

Json conventionsOf(const OrientOptions& options) {
    if (options.goal != Goal::kWeights) return poseConventions();
    return {{"matrix", kMatrixConvention},
            {"axis", "unit vector, right-handed; zero if no turn is needed"},
            {"up", "the direction of the part that the orientation turns to +Z"},
            {"score", "lower is better"}};
}

Json reportJson(const OrientOptions& options, const OrientResult& result) {
    Json report = {{"schema", "tesk-orient/orient/1"},
                   {"input", inputValue(options, result.part)},
                   {"settings", settingsOf(options)},
                   {"conventions", conventionsOf(options)}};
    report.update(rankingMembers(options, result));
    return report;
}

}  // namespace App

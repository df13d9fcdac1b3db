#include "poses/Pose.h"
#include "reports/OrientReport.h"
#include "reports/ReportText.h"

namespace App {

namespace {

using OptimizeOrient::OptOrientation;

Json settingsOf(const OrientOptions& options) {
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

Json recordOf(const OrientOptions& options, const TriangleMesh& mesh, const UPoint3<float>& center,
              const OptOrientation& o, int rank) {
    return {{"rank", rank},
            {"score", o.score},
            {"axis", valueOf(o.axis.GetNormal())},
            {"angleRad", o.angle},
            {"angleDeg", degreesOf(o.angle)},
            {"up", valueOf(upOf(o))},
            {"matrix", valueOf(poseOf(o, mesh, center, options.config.baseHeight))},
            {"heightMm", o.height},
            {"supportVolumeMm3", o.supportVolume},
            {"overhangAreaMm2", o.overhangArea},
            {"projectedAreaMm2", o.projectedArea},
            {"boxVolumeMm3", o.boxVolume}};
}

}  // namespace

Json reportJson(const OrientOptions& options, const OrientResult& result) {
    Json records = Json::array();
    const UPoint3<float> center = centerOf(result.part.mesh);
    int rank = 0;
    for (const OptOrientation& o : result.orientations) {
        records.push_back(recordOf(options, result.part.mesh, center, o, ++rank));
    }
    return {{"schema", "tesk-orient/orient/1"},
            {"input", inputValue(options, result.part)},
            {"settings", settingsOf(options)},
            {"conventions",
             {{"matrix", kMatrixConvention},
              {"axis", "unit vector, right-handed; zero if no turn is needed"},
              {"up", "the direction of the part that the orientation turns to +Z"},
              {"score", "lower is better"}}},
            {"chosenRank", options.rank},
            {"orientations", records}};
}

}  // namespace App

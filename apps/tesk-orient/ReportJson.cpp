#include <nlohmann/json.hpp>
#include <numbers>

#include "FileBytes.h"
#include "MeshChecks.h"
#include "Pose.h"
#include "Report.h"

namespace App {

namespace {

using Json = nlohmann::ordered_json;
using OptimizeOrient::OptOrientation;

/// −0 becomes 0, which programs and people find easier to compare.
float unsignedZero(float value) {
    return value + 0.0f;
}

Json vectorOf(const UVector3<float>& v) {
    return {unsignedZero(v.x), unsignedZero(v.y), unsignedZero(v.z)};
}

Json inputOf(const Options& options, const LoadedPart& part) {
    const std::array<double, 3> size = sizeOf(part.mesh);
    Json warnings = Json::array();
    for (const Warning& warning : part.warnings) {
        warnings.push_back(
            {{"code", warning.code}, {"count", warning.count}, {"text", warning.text}});
    }
    return {{"file", displayName(options.part)},
            {"format", part.format},
            {"form", part.form},
            {"unit", part.unit.name},
            {"unitFromFile", part.unitFromFile},
            {"triangles", part.mesh.triangles.size()},
            {"vertices", part.mesh.positions.size()},
            {"sizeMm", {size[0], size[1], size[2]}},
            {"warnings", warnings}};
}

Json settingsOf(const Options& options) {
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

Json matrixOf(const UMatrix4<float>& m) {
    Json rows = Json::array();
    for (int row = 0; row < 4; ++row) {
        Json cells = Json::array();
        for (int col = 0; col < 4; ++col) cells.push_back(unsignedZero(m.at(row, col)));
        rows.push_back(cells);
    }
    return rows;
}

Json recordOf(const Options& options, const TriangleMesh& mesh, const OptOrientation& o, int rank) {
    return {{"rank", rank},
            {"score", o.score},
            {"axis", vectorOf(o.axis.GetNormal())},
            {"angleRad", o.angle},
            {"angleDeg", static_cast<double>(o.angle) * 180.0 / std::numbers::pi},
            {"up", vectorOf(upOf(o))},
            {"matrix", matrixOf(poseOf(o, mesh, options.config.baseHeight))},
            {"heightMm", o.height},
            {"supportVolumeMm3", o.supportVolume},
            {"overhangAreaMm2", o.overhangArea},
            {"projectedAreaMm2", o.projectedArea},
            {"boxVolumeMm3", o.boxVolume}};
}

}  // namespace

std::string reportJson(const Options& options, const OrientResult& result) {
    Json records = Json::array();
    int rank = 0;
    for (const OptOrientation& o : result.orientations) {
        records.push_back(recordOf(options, result.part.mesh, o, ++rank));
    }
    const Json report = {
        {"schema", "tesk-orient/orient/1"},
        {"input", inputOf(options, result.part)},
        {"settings", settingsOf(options)},
        {"conventions",
         {{"matrix", "4 rows; row vectors in mm: [x y z 1] * matrix; the translation is row 4"},
          {"axis", "unit vector, right-handed; zero where nothing turns"},
          {"up", "the direction of the part that the orientation turns to +Z"},
          {"score", "lower is better"}}},
        {"chosenRank", options.rank},
        {"orientations", records}};
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace App

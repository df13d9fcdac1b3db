#include "reports/ReportValues.h"

#include <array>

#include "part/MeshChecks.h"
#include "part/PathText.h"
#include "reports/ReportText.h"

namespace App {

namespace {

float unsignedZero(float value) {
    return value + 0.0f;
}

}  // namespace

const char* const kMatrixConvention =
    "4 rows; row vectors in mm: [x y z 1] * matrix; the translation is row 4";

Json valueOf(const UVector3<float>& v) {
    return {unsignedZero(v.x), unsignedZero(v.y), unsignedZero(v.z)};
}

Json valueOf(const UMatrix4<float>& m) {
    Json rows = Json::array();
    for (int row = 0; row < 4; ++row) {
        Json cells = Json::array();
        for (int col = 0; col < 4; ++col) cells.push_back(unsignedZero(m.at(row, col)));
        rows.push_back(cells);
    }
    return rows;
}

Json valueOf(const Turn& turn) {
    return {{"axis", valueOf(turn.axis)},
            {"angleRad", turn.angleRad},
            {"angleDeg", degreesOf(turn.angleRad)}};
}

Json inputValue(const CommonOptions& options, const LoadedPart& part) {
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

std::string textOf(const Json& report) {
    return report.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace App

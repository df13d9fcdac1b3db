#pragma once

#include <string>

#include "TeskDataBasic/UMatrix4.h"
#include "options/Options.h"
#include "part/MeshFile.h"
#include "reports/ReportValues.h"

namespace App {

/// How a part was laid flat.
struct LayFlatResult {
    LoadedPart part;
    UMatrix4<float> matrix;
    TriangleMesh placed;
};

/// A few lines for people.
std::string layFlatReportTable(const LayFlatOptions& options, const LayFlatResult& result);

/// The same for programs: one JSON object, whose "schema" names its version.
Json layFlatReportJson(const LayFlatOptions& options, const LayFlatResult& result);

/// What these consist of, for reports of several parts.
std::string layFlatText(const LayFlatResult& result);
Json layFlatConventions();
Json layFlatMembers(const LayFlatResult& result);

}  // namespace App

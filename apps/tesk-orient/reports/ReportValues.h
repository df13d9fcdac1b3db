#pragma once

#include <nlohmann/json.hpp>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"
#include "options/Options.h"
#include "part/MeshFile.h"
#include "poses/Turn.h"

namespace App {

/// Objects whose members keep their order.
using Json = nlohmann::ordered_json;

/// Three numbers; −0 becomes 0, which programs and people find easier to compare.
Json valueOf(const UVector3<float>& v);

/// Four rows of four.
Json valueOf(const UMatrix4<float>& m);

/// Axis, and angle both ways.
Json valueOf(const Turn& turn);

/// What was read, with its warnings.
Json inputValue(const CommonOptions& options, const LoadedPart& part);

/// How a matrix in a report is to be read.
extern const char* const kMatrixConvention;

/// A report as text. Bytes that are no UTF-8 are replaced.
std::string textOf(const Json& report);

}  // namespace App

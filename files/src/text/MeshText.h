#pragma once

#include <string>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// Appends the fewest digits that read back to the same float, with an exponent only below 1e-4 and
/// from 1e7 on.
void appendFloat(std::string& text, float value);

/// Appends "x y z".
void appendPoint(std::string& text, const PartPoint& point);

}  // namespace Tesk::files

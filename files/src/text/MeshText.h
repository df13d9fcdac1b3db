#pragma once

#include <string>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// Appends "x y z": each in the fewest digits that read back to the same float, and without an
/// exponent where people expect none.
void appendPoint(std::string& text, const PartPoint& point);

}  // namespace Tesk::files

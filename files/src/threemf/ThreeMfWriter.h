#pragma once

#include <string>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// The bytes of a 3MF package with one object, in millimetres, and one build item.
std::string encodeThreeMf(const PartMesh& mesh);

}  // namespace Tesk::files

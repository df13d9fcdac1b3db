#pragma once

#include <string>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// See Tesk::encodePart().
std::string encodeObj(const PartMesh& mesh);

}  // namespace Tesk::files

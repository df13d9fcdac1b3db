#pragma once

#include <string>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// See Tesk::encodePart().
std::string encodeStl(const PartMesh& mesh);

}  // namespace Tesk::files

#pragma once

#include <string>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// See Tesk::encodePart().
std::string encodePly(const PartMesh& mesh);

}  // namespace Tesk::files

#pragma once

#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "mesh/Progress.h"

namespace Tesk::files {

/// Reads a 3MF package; see Tesk::readPart(). Vertices of different objects stay apart.
PartFile readThreeMf(std::string_view bytes, const ReadOptions& options, Progress& progress);

}  // namespace Tesk::files

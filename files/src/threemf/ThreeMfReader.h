#pragma once

#include <string_view>

#include "TeskPartFiles/Plates.h"
#include "mesh/Progress.h"

namespace Tesk::files {

/// Reads a 3MF package; see Tesk::readPart(). Vertices of different objects stay apart.
PartFile readThreeMf(std::string_view bytes, const ReadOptions& options, Progress& progress);

/// The same object by object; see Tesk::readPlate(). Nothing is welded.
Plate readThreeMfPlate(std::string_view bytes, const ReadOptions& options, Progress& progress);

}  // namespace Tesk::files

#pragma once

#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "mesh/Progress.h"

namespace Tesk::files {

/// Reads PLY: the positions of its element "vertex", the polygons of "face" and the strips of
/// "tristrips", whatever types they have and whatever else is there; the rest is passed over. The
/// mesh is not welded.
PartFile readPly(std::string_view bytes, const ReadOptions& options, Progress& progress);

}  // namespace Tesk::files

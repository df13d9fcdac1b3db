#pragma once

#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "mesh/Progress.h"

namespace Tesk::files {

/// Reads OFF text: the first word may be OFF with ST, C and N in front, or missing; the counts may
/// stand beside it. What follows a vertex's position or a face's corners on their line is passed
/// over: normals, colours, texture coordinates. Refuses binary OFF and OFF of more dimensions by
/// name. The mesh is not welded.
PartFile readOff(std::string_view bytes, const ReadOptions& options, Progress& progress);

}  // namespace Tesk::files

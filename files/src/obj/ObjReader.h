#pragma once

#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "mesh/Progress.h"

namespace Tesk::files {

/// Reads the lines of an OBJ that shape its surface, "v" and "f", and the names of its objects, in
/// one mesh; groups, materials, normals, texture coordinates, points, lines and free-form surfaces
/// are passed over. Faces may come before the vertices that they name. The mesh is not welded.
PartFile readObj(std::string_view bytes, const ReadOptions& options, Progress& progress);

}  // namespace Tesk::files

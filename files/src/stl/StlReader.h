#pragma once

#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "mesh/Progress.h"

namespace Tesk::files {

/// Reads STL of either form; see Tesk::readPart(). Stored normals are not used.
///
/// Binary is what has the size that its count asks for; what begins with "solid" and goes on as
/// text does is text; the rest is taken as damaged binary.
PartFile readStl(std::string_view bytes, const ReadOptions& options, Progress& progress);

/// The two forms, once they are told apart.
PartFile readBinaryStl(std::string_view bytes, const ReadOptions& options, Progress& progress);
PartFile readTextStl(std::string_view bytes, const ReadOptions& options, Progress& progress);

/// Whether the bytes have exactly the size that a binary STL's count asks for.
bool fitsStlCount(std::string_view bytes);

}  // namespace Tesk::files

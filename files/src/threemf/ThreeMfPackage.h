#pragma once

#include <string>
#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "zip/ZipReader.h"

namespace Tesk::files {

/// The archive's name of a part that a package names: absolute or from the package's root, perhaps
/// with characters written as %20 in one of the two. If the package holds no such part, the name as
/// it was given.
std::string partNamed(const ZipReader& zip, std::string_view path);

/// The model part that the package's relationships name; if they name none, 3D/3dmodel.model, with
/// a warning. Throws PartFileError if there is no such part.
std::string rootModelPart(ZipReader& zip, std::vector<PartWarning>& warnings);

}  // namespace Tesk::files

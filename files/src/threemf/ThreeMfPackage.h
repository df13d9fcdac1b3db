#pragma once

#include <string>
#include <string_view>

#include "TeskPartFiles/PartFiles.h"
#include "zip/ZipReader.h"

namespace Tesk::files {

/// The archive's name of a part that a package names: absolute or from the package's root, perhaps
/// with characters written as %20 in one of the two. The name as it was given where the package
/// holds no such part.
std::string partNamed(const ZipReader& zip, std::string_view path);

/// The model part that the package's relationships name or, with a warning, 3D/3dmodel.model where
/// they name none. Throws PartFileError where there is no such part.
std::string rootModelPart(ZipReader& zip, std::vector<PartWarning>& warnings);

}  // namespace Tesk::files

#pragma once

#include <vector>

#include "tools/ZipMaker.h"

/// A package as slicers write them, with all that a change of transforms must leave alone: separate
/// model files of the production extension, nested, mirrored, scaled and shared objects, materials,
/// colours, textures, paint on triangles, metadata, thumbnails, and the slicers' own settings.
///
/// Its items, in order: object 6 moved, object 6 turned and scaled, object 7 without a transform,
/// object 3 mirrored and not to be printed, a support, object 1 of another model file.
std::vector<ZipFile> platePackage();

inline constexpr std::size_t kPlateItems = 6;
inline constexpr std::size_t kPlateSupport = 4;  ///< the place of the support

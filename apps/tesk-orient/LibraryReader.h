#pragma once

#include <string>

#include "FormatCheck.h"
#include "TriangleMesh.h"

namespace App {

/// Reads a checked file with the mesh file library and cuts polygons into triangles. Every
/// triangle comes with three positions of its own or shared ones, as the format has them.
///
/// @param extension  "stl", "obj", "ply" or "off"
/// @param content    what the check found; a polygon that cannot be cut adds a warning to it.
///
/// The library sees these bytes only: it opens no other file that they name. It reads decimal
/// numbers to within one unit in a float's last place. Throws InputFailure where the library
/// refuses the file or finds another number of faces than the check did.
TriangleMesh readWithLibrary(const std::string& bytes, const std::string& extension,
                             FileContent& content);

}  // namespace App

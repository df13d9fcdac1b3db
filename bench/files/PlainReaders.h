#pragma once

#include <string>

#include "TeskPartFiles/PartFiles.h"

/// Reads a sound mesh file of triangles, of any format but 3MF, in the plainest way, on one thread:
/// numbers with the C library, vertices merged through the standard library's hash map.
Tesk::PartMesh plainlyRead(const std::string& bytes, Tesk::PartFormat format);

#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "shapes/Part.h"

/// The sample meshes: real parts in files that the file library reads, which do not belong to this
/// repository. They are looked for in the folder that the environment variable TESK_MESH_DIR or the
/// CMake variable of that name gives. Sorted by name; empty where the folder is absent.
std::vector<std::filesystem::path> sampleMeshes();

/// Why there are none, for a skipped test to say.
std::string whyNoSampleMeshes();

/// Reads a mesh file as it stands (units ignored), equal positions welded; nothing where it cannot
/// be read.
std::optional<Part> readSampleMesh(const std::filesystem::path& file);

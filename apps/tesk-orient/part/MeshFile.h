#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>

#include "TeskMeshData/MeshKernel.h"
#include "TriangleMesh.h"
#include "Warning.h"
#include "options/LengthUnit.h"
#include "part/MeshChecks.h"

namespace App {

/// A mesh file, read, welded and scaled to millimetres.
struct LoadedPart {
    std::string format;  ///< "STL", "OBJ", "PLY", "OFF" or "3MF"
    std::string form;    ///< "binary", "ASCII" or empty
    LengthUnit unit;     ///< what the file's numbers were taken to be
    bool unitFromFile = false;
    TriangleMesh mesh;
    Warnings warnings;
    TopologyCounts topology{};  ///< of the mesh; zeros until it is checked
    SurfaceMeasures measures{};
};

/// Reads STL, OBJ, PLY, OFF or 3MF, told apart by the name's extension.
///
/// @param unit  what the numbers are; empty for what the file says (3MF only), else millimetres.
///
/// Equal positions become one vertex. Throws InputFailure that names the file and the trouble,
/// such as the first vertex that is not finite.
LoadedPart readMeshFile(const std::filesystem::path& path, std::optional<LengthUnit> unit);

}  // namespace App

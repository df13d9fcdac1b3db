#pragma once

#include <array>
#include <filesystem>
#include <functional>
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
    LengthUnit unit{};   ///< what the file's numbers were taken to be
    bool unitFromFile = false;
    TriangleMesh mesh;
    Warnings warnings;
    TopologyCounts topology{};  ///< of the mesh; zeros until it is checked
    Tesk::SurfaceMeasures measures{};
};

/// Reads STL, OBJ, PLY, OFF or 3MF, told apart by the name's extension.
///
/// @param unit  what the numbers are; empty for what the file says (3MF only), else millimetres.
/// @param threads  how many may work; 0 for as many as the machine has
///
/// Equal positions become one vertex. Throws InputFailure that names the file and the trouble,
/// such as the first vertex that is not finite.
LoadedPart readMeshFile(const std::filesystem::path& path, std::optional<LengthUnit> unit,
                        unsigned threads = 0);

/// Runs what reads a file. Errors of the file and a lack of memory leave it as an InputFailure that
/// names the file.
void readNamingErrors(const std::filesystem::path& path, const std::function<void()>& read);

/// The unit of a file's numbers: the one that was asked for, or that the file states, or
/// millimetres, with a warning where the file states one that nobody knows.
LengthUnit unitOf(const std::optional<std::string>& inFile, std::optional<LengthUnit> asked,
                  Warnings& warnings);

/// Throws InputFailure that names the first vertex that is not finite.
void refuseNonFinite(const TriangleMesh& mesh);

}  // namespace App

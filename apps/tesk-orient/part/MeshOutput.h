#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "TriangleMesh.h"
#include "part/FileOutput.h"

namespace App {

/// A mesh file to be written: STL (binary), OBJ, PLY (binary), OFF or 3MF by its extension. It
/// appears under its name only when it is complete.
class MeshOutput {
 public:
    /// Checks, before any work is done, that the format is known and that a file can be made there.
    /// Throws Failure with ExitCode::kOutput.
    explicit MeshOutput(const std::filesystem::path& path);

    /// Writes the mesh, in millimetres. Throws Failure with ExitCode::kOutput.
    void write(const TriangleMesh& mesh);

    /// Writes what a function makes, whose Tesk::PartFileError becomes such a Failure.
    void writeBytes(const std::function<std::string()>& make);

    bool isThreeMf() const;

 private:
    std::filesystem::path m_path;
    FileOutput m_file;
};

/// Of a file name that a half-written output has (for the time until it is complete, or for good
/// where the process was killed) the output's own name; empty for any other.
std::filesystem::path outputOfTemporary(const std::filesystem::path& name);

}  // namespace App

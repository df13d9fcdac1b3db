#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "TriangleMesh.h"

namespace App {

/// A mesh file to be written: STL (binary), OBJ, PLY (binary), OFF or 3MF by its extension. It
/// appears under its name only when it is complete.
class MeshOutput {
 public:
    /// Checks, before any work is done, that the format is known and that a file can be made there.
    /// Throws Failure with ExitCode::kOutput.
    explicit MeshOutput(const std::filesystem::path& path);

    /// Removes what is half written.
    ~MeshOutput();
    MeshOutput(const MeshOutput&) = delete;
    MeshOutput& operator=(const MeshOutput&) = delete;

    /// Writes the mesh, in millimetres. Throws Failure with ExitCode::kOutput.
    void write(const TriangleMesh& mesh);

    /// Writes what a function makes, whose Tesk::PartFileError becomes such a Failure.
    void writeBytes(const std::function<std::string()>& make);

    bool isThreeMf() const;

 private:
    std::filesystem::path m_path;
    std::filesystem::path m_temporary;
};

}  // namespace App

#pragma once

#include <filesystem>
#include <string_view>

namespace App {

/// A file to be written whole: it appears under its name only when it is complete.
class FileOutput {
 public:
    /// Checks, before any work is done, that a file can be made there. Throws Failure with
    /// ExitCode::kOutput.
    explicit FileOutput(std::filesystem::path path);

    /// Throws Failure with ExitCode::kOutput; then nothing is left behind.
    void write(std::string_view bytes);

 private:
    std::filesystem::path m_path;
};

}  // namespace App

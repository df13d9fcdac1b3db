#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What a program left behind.
struct ProgramResult {
    int code = -1;
    double seconds = 0.0;
    std::string out;
    std::string error;
};

/// What a program inherits for SIGINT: Ctrl-C ends it unless it does something about it, or it is
/// ignored, as a shell leaves it for jobs in the background.
enum class InheritedSigint { kEnds, kIgnored };

/// Runs a program to its end. Where `interruptAfterMs` is not negative, it gets SIGINT that long
/// after it has begun to handle signals, and `seconds` counts from there.
ProgramResult run(const std::string& program, const std::vector<std::string>& arguments,
                  int interruptAfterMs = -1, InheritedSigint inherited = InheritedSigint::kEnds);

/// Whether run() can interrupt a program. On Windows only a console can, and a test has none.
bool canInterrupt();

/// tesk-orient.
ProgramResult runTeskOrient(const std::vector<std::string>& arguments, int interruptAfterMs = -1,
                            InheritedSigint inherited = InheritedSigint::kEnds);

/// A folder for one test's files, removed at the end.
class TemporaryFolder {
 public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string file(const std::string& name) const { return (m_path / name).string(); }
    /// Writes a file and returns its path.
    std::string write(const std::string& name, const std::string& bytes) const;
    std::size_t countFiles() const;

 private:
    std::filesystem::path m_path;
};

std::string readAll(const std::filesystem::path& path);

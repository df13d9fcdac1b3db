#pragma once

#include <filesystem>

namespace App {

/// Lets the user end the program with Ctrl-C (or a termination signal) within a tenth of a second,
/// whatever it is doing: the work sees isRequested() at its next report and ends by itself; where
/// that takes too long, the process ends at once. Either way the exit code is 130 and no half-made
/// file stays behind. One object per process, made before any thread.
class Interrupt {
 public:
    Interrupt();

    static bool isRequested();

    /// Says "aborted" on standard error, once per process.
    static void report();

    /// A file to remove when the process has to end at once; an empty path for none.
    static void setTemporaryFile(const std::filesystem::path& file);
};

}  // namespace App

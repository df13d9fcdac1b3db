#pragma once

#include <filesystem>
#include <mutex>

namespace App {

/// Lets the user end the program with Ctrl-C (or a termination signal) within a tenth of a second,
/// whatever it is doing, unless the parent process had the signal ignored: the work sees
/// isRequested() at its next report and ends by itself; where that takes too long, the process ends
/// at once. Either way the exit code is 130 and no half-made file stays behind. One object per
/// process, made before any thread.
class Interrupt {
 public:
    Interrupt();

    static bool isRequested();

    /// Says "aborted" on standard error, once per process.
    static void report();

    /// Keeps the process from ending at once while the result is held. Hold it while a temporary
    /// file is made: the file then either does not exist yet, or will be removed.
    static std::unique_lock<std::mutex> hold();

    /// A file to remove when the process has to end at once; an empty path for none.
    static void setTemporaryFile(const std::filesystem::path& file);

    /// Ends the process with this code, from whatever thread, and removes the temporary file.
    [[noreturn]] static void endAtOnce(int code);
};

}  // namespace App

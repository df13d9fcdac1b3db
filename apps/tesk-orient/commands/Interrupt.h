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

    /// While this is held, the process does not end at once: for making the temporary file, so that
    /// it is either not there yet or known to be removed.
    static std::unique_lock<std::mutex> hold();

    /// A file to remove when the process has to end at once; an empty path for none.
    static void setTemporaryFile(const std::filesystem::path& file);

    /// Ends the process with this code, from whatever thread, and removes the temporary file.
    [[noreturn]] static void endAtOnce(int code);
};

}  // namespace App

#pragma once

namespace App {

/// What the program returns to the shell; --help lists them.
enum class ExitCode : int {
    kSuccess = 0,
    kInternal = 1,
    kUsage = 2,
    kInput = 3,
    kOutput = 4,
    kNoPose = 5,
    kSomeFailed = 5,  ///< of the files of a batch
    kAborted = 130,
};

}  // namespace App

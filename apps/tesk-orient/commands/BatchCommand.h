#pragma once

#include "options/BatchOptions.h"

namespace App {

/// Works on all parts that the options name, and prints a sentence about it on standard output and
/// the failures on standard error. Throws Failure, with ExitCode::kSomeFailed where parts failed,
/// and Tesk::AbortException after Ctrl-C.
void run(const BatchOptions& options);

}  // namespace App

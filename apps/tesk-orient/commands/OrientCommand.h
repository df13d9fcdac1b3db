#pragma once

#include "options/Options.h"

namespace App {

/// Reads the part, ranks its orientations, writes the turned part where one is asked for, and
/// prints the report on standard output. Throws Failure, and Tesk::AbortException after Ctrl-C.
void run(const OrientOptions& options);

}  // namespace App

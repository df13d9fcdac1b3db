#pragma once

#include "options/Options.h"

namespace App {

/// Reads the part, finds the box that the options ask for, writes it where that is asked for, and
/// prints the report on standard output. Throws Failure, and Tesk::AbortException after Ctrl-C.
void run(const BoxOptions& options);

}  // namespace App

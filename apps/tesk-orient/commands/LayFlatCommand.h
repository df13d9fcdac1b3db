#pragma once

#include "options/Options.h"

namespace App {

/// Reads the part, lays it flat in its box of least volume, writes it where that is asked for, and
/// prints the report on standard output. Throws Failure, and Tesk::AbortException after Ctrl-C.
void run(const LayFlatOptions& options);

}  // namespace App

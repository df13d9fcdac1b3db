#pragma once

#include "options/Options.h"
#include "reports/Report.h"

namespace App {

/// Reads the part, lays it flat in its box of least volume, and writes it where the options ask for
/// that. Prints nothing but the progress bar. Throws Failure, and Tesk::AbortException after
/// Ctrl-C.
Report layFlatReport(const LayFlatOptions& options, const WarningSink& warn = {});

/// The same, with warnings on standard error and the report on standard output.
void run(const LayFlatOptions& options);

}  // namespace App

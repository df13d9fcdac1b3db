#pragma once

#include "options/Options.h"
#include "reports/Report.h"

namespace App {

/// Reads the part, ranks its orientations, and writes the turned part where the options ask for it.
/// Prints nothing but the progress bar. Throws Failure, and Tesk::AbortException after Ctrl-C.
Report orientReport(const OrientOptions& options, const WarningSink& warn = {});

/// The same, with warnings on standard error and the report on standard output.
void run(const OrientOptions& options);

}  // namespace App

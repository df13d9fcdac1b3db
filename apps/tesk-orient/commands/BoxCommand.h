#pragma once

#include "options/Options.h"
#include "reports/Report.h"

namespace App {

/// Reads the part, finds the box that the options ask for, and writes it where they ask for that.
/// Prints nothing but the progress bar. Throws Failure, and Tesk::AbortException after Ctrl-C.
Report boxReport(const BoxOptions& options, const WarningSink& warn = {});

/// The same, with warnings on standard error and the report on standard output.
void run(const BoxOptions& options);

}  // namespace App

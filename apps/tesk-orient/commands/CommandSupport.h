#pragma once

#include <functional>

#include "commands/ProgressBar.h"
#include "options/Options.h"
#include "part/MeshChecks.h"
#include "part/MeshFile.h"
#include "reports/Report.h"

namespace App {

/// Throws Tesk::AbortException after Ctrl-C.
void stopIfInterrupted();

/// A part, and its mesh as the orientation library takes it.
struct CheckedPart {
    LoadedPart part;
    MeshKernel kernel;
};

/// The part that the options name, with its edge counts and the warnings of the file and of the
/// mesh together. Throws InputFailure.
///
/// @param purpose  what the mesh is for
CheckedPart loadPart(const CommonOptions& options, Purpose purpose);

/// Tells all warnings to who wants to hear them.
void tell(const WarningSink& warn, const Warnings& warnings);

/// Prints warnings about the part on standard error; empty if they are not wanted.
WarningSink warningPrinter(const CommonOptions& options);

/// A part that has been read, with its edge counts and the mesh's warnings behind its own.
CheckedPart checkedPart(const CommonOptions& options, LoadedPart part, Purpose purpose);

/// One of several pieces of work, from 0.
struct WorkShare {
    int index = 0;
    int count = 1;
};

/// A progress callback for the library: shows the bar, and ends the work after Ctrl-C.
///
/// @param end    the percentage that the work ends at
/// @param share  which part of the bar is the work's
std::function<void(int)> progressOn(ProgressBar& bar, int end = 100, WorkShare share = {});

/// The number of threads to use.
unsigned int threadCountOf(const CommonOptions& options);

/// Prints the report on standard output, and for people what was written where. Throws Failure with
/// ExitCode::kOutput.
void printReport(const CommonOptions& options, const Report& report);

}  // namespace App

#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "commands/ProgressBar.h"
#include "options/Options.h"
#include "part/MeshChecks.h"
#include "part/MeshFile.h"

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

/// Prints a part's warnings on standard error, unless they are not wanted.
void printWarnings(const CommonOptions& options, const LoadedPart& part);

/// A progress callback for the library: shows the bar, and ends the work after Ctrl-C.
///
/// @param end  the percentage that the work ends at
std::function<void(int)> progressOn(ProgressBar& bar, int end = 100);

/// The number of threads to use.
unsigned int threadCountOf(const CommonOptions& options);

/// Prints the report on standard output, and for people what was written where.
void printReport(const CommonOptions& options, const std::string& report);

}  // namespace App

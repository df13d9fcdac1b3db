#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "batch/InputList.h"

namespace App {

/// Where the output of an input goes.
struct PlannedOutput {
    std::filesystem::path path;  ///< empty for none
    std::string problem;         ///< why it cannot go there; empty if it can
};

/// One for each input, in their order: below the folder, with the extension if one is given. Of
/// several that would have one name, the first has it; a name that an input has is nobody's. On
/// Windows names that differ in the case of ASCII letters only are one.
///
/// @param folder     empty: nothing is written
/// @param extension  with its dot; empty keeps that of the input
std::vector<PlannedOutput> planOutputs(const std::vector<BatchInput>& inputs,
                                       const std::filesystem::path& folder,
                                       const std::string& extension);

/// Makes the folder for an output below the output folder, which has to be there: were it made
/// again after its disk was taken away, the results would go elsewhere. Throws Failure with
/// ExitCode::kOutput.
void makeFolderFor(const std::filesystem::path& output, const std::filesystem::path& folder);

/// Removes what a worker that was killed left beside an output.
void removeLeftovers(const std::filesystem::path& output);

/// The same for all outputs at once.
void removeLeftovers(const std::vector<PlannedOutput>& outputs);

}  // namespace App

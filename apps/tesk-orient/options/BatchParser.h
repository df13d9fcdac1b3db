#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <string>
#include <vector>

#include "options/BatchOptions.h"

namespace App {

/// What the library gives of a batch, to be taken over after parsing.
struct BatchTexts {
    std::vector<std::string> inputs;
    std::vector<std::string> include;
    std::string results;
    std::string outputFolder;
    std::string outputFormat;
    std::string reportFolder;
    std::string command = "orient";
    double timeoutSeconds = 0.0;
    BatchOptions plain;  ///< what needs no taking over
};

/// Adds the command `batch`, with its own options and those of the commands that it can carry out
/// but for the ones that a batch decides itself.
CLI::App* addBatch(CLI::App& app, const std::vector<CLI::App*>& commands, BatchTexts& texts);

/// What was parsed. Throws Failure with ExitCode::kUsage, also where the chosen command does not
/// take what was given for it.
BatchOptions batchOptionsOf(const CLI::App& batch, const BatchTexts& texts);

}  // namespace App

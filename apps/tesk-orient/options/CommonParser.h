#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "options/Options.h"

namespace App {

/// What CLI11 gives of the common options as text, to be taken over after parsing.
struct CommonTexts {
    std::string part;
    std::string output;
    std::string unit;
    bool isTogether = false;
    bool isSplit = false;
};

/// Adds the options that every command has.
///
/// @param whatOutputIs  completes "Write … here"
void addCommon(CLI::App& command, CommonOptions& options, CommonTexts& texts,
               const std::string& whatOutputIs);

void addThreads(CLI::App& command, CommonOptions& options);

/// Takes over what was parsed. Throws Failure with ExitCode::kUsage.
void take(const CommonTexts& texts, CommonOptions& options);

/// Throws a Failure with ExitCode::kUsage that says why, and where help is.
[[noreturn]] void refuse(const std::string& why);

}  // namespace App

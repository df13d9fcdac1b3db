#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <string>
#include <vector>

#include "options/Options.h"

namespace App {

/// What CLI11 gives of the command `orient` as text or not at all, to be taken over after parsing.
struct OrientTexts {
    std::string goal;
    std::optional<float> overhangAngle;
    std::string fits;
    std::vector<std::string> keepOff;
    std::string page;
    std::string picture;
};

/// Adds the options that only `orient` has.
void addOrient(CLI::App& orient, OrientOptions& options, OrientTexts& texts);

/// Takes over what was parsed. Throws Failure with ExitCode::kUsage.
void take(const CLI::App& orient, const OrientTexts& texts, OrientOptions& options);

}  // namespace App

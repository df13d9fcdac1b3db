#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "LengthUnit.h"
#include "OrientOptimizer.h"

namespace App {

/// What the command line asks for.
struct Options {
    std::filesystem::path part;
    std::filesystem::path output;  ///< empty: write none
    OptimizeOrient::Configure config;
    std::optional<LengthUnit> unit;
    int threads = 0;  ///< 0: as many as the machine has
    std::uint32_t seed = 1;
    int rank = 1;
    bool isJson = false;
    bool isQuiet = false;
    bool isVerbose = false;
};

/// Reads the command line. Empty after --help or --version, which it prints. Throws Failure with
/// ExitCode::kUsage.
std::optional<Options> readOptions(int argc, char** argv);

}  // namespace App

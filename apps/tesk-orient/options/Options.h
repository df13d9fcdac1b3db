#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "BuildPose.h"
#include "OrientOptimizer.h"
#include "TeskDataBasic/UVector3.h"
#include "options/LengthUnit.h"

namespace App {

/// What of a file is one part.
enum class Parts {
    kByFormat,  ///< every object of a 3MF; the whole file of any other format
    kTogether,  ///< the whole file
    kSplit,     ///< every body of a file that is no 3MF
};

/// What every command takes.
struct CommonOptions {
    std::filesystem::path part;
    std::filesystem::path output;  ///< empty: write none
    std::optional<LengthUnit> unit;
    Parts parts = Parts::kByFormat;
    std::vector<std::string> objects;  ///< names or ids of those to take; empty for all
    int threads = 0;                   ///< 0: as many as the machine has
    bool isJson = false;
    bool isQuiet = false;
};

/// Whether the file's objects or bodies are parts of their own. Those of a 3MF are unless it is
/// taken together; splitting does not change that.
bool isByObject(const CommonOptions& options);

/// How orientations are judged.
enum class Goal { kBalanced, kLeastSupport, kWeights };

/// As the option --goal takes it, and as reports print it.
const char* nameOf(Goal goal);

struct OrientOptions : CommonOptions {
    Goal goal = Goal::kBalanced;
    OptimizeOrient::PoseGoal poseGoal;  ///< of the goals but kWeights
    OptimizeOrient::Configure config;   ///< of kWeights
    std::uint32_t seed = 1;             ///< of kWeights
    int rank = 1;
    std::filesystem::path page;     ///< of --report; empty: write none
    std::filesystem::path picture;  ///< empty: draw none
    bool isVerbose = false;
};

/// What a smallest box is smallest in.
enum class Criterion { kVolume, kBaseArea, kBaseHeight, kAroundAxis, kPrincipal };

/// As the option --criterion takes it, and as reports print it.
const char* nameOf(Criterion criterion);

struct BoxOptions : CommonOptions {
    Criterion criterion = Criterion::kVolume;
    UVector3<float> axis;  ///< of kAroundAxis
};

struct LayFlatOptions : CommonOptions {};

using Command = std::variant<OrientOptions, BoxOptions, LayFlatOptions>;

/// Reads the command line. Empty after --help or --version, which it prints. Throws Failure with
/// ExitCode::kUsage.
std::optional<Command> readCommand(int argc, char** argv);

}  // namespace App

#include "Options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <sstream>
#include <vector>

#include "Failure.h"
#include "Version.h"

namespace App {

namespace {

constexpr const char* kDescription =
    "Finds out in which orientation a part should be 3D-printed.\n"
    "Reads STL, OBJ, PLY, OFF and 3MF files.";

constexpr const char* kFooter = R"(
Examples:
  tesk-orient orient bracket.stl
  tesk-orient orient bracket.stl --output turned.3mf
  tesk-orient orient bracket.obj --units inch --overhang-angle 50 --json
  tesk-orient orient bracket.stl --support-volume-weight 0 --height-weight 1 --rank 2 -o low.stl

Exit codes:
  0  done                              3  the part cannot be read
  1  internal error                    4  the output cannot be written
  2  the command line makes no sense   130  aborted
)";

void addConfigure(CLI::App& orient, OptimizeOrient::Configure& config) {
    const auto weight = [&](const char* name, std::int32_t& value, const char* what) {
        orient.add_option(name, value, what)
            ->capture_default_str()
            ->check(CLI::Range(0, 1'000'000))
            ->group("What a good orientation is worth");
    };
    weight("--height-weight", config.heightWeight, "Weight of the height: printing time");
    weight("--support-volume-weight", config.supportVolumeWeight,
           "Weight of the support's volume: material");
    weight("--support-area-weight", config.supportAreaWeight,
           "Weight of the overhanging area and of the footprint; large overhanging triangles count "
           "more than their area says, so use it with care");
    weight("--box-volume-weight", config.boxVolumeWeight, "Weight of the bounding box's volume");
    orient
        .add_option("--overhang-angle", config.overhangAngle,
                    "Steepest overhang that prints without support, degrees")
        ->capture_default_str()
        ->check(CLI::Range(0.0f, 90.0f))
        ->group("How support is measured");
    orient
        .add_option(
            "--base-height", config.baseHeight,
            "Height of the lowest point above the plate, mm; -1 leaves the turned part where it is")
        ->capture_default_str()
        ->check(CLI::Range(-1.0f, 1e6f))
        ->group("How support is measured");
    orient
        .add_flag("--compute-support", config.computeSupport,
                  "Measure support even where both support weights are 0")
        ->group("How support is measured");
}

void addRest(CLI::App& orient, Options& options, std::string& part, std::string& output,
             std::string& unit) {
    std::vector<std::string> units;
    for (const LengthUnit& known : lengthUnits()) units.emplace_back(known.name);
    orient.add_option("PART", part, "The part's file: .stl, .obj, .ply, .off or .3mf")->required();
    orient.add_option("-o,--output", output, "Write the turned part here; the extension says how");
    orient.add_option("--rank", options.rank, "Take this one of the listed orientations")
        ->capture_default_str()
        ->check(CLI::Range(1, 12));
    orient.add_option("--units", unit, "Unit of the file's numbers [mm; for 3MF the file's own]")
        ->check(CLI::IsMember(units));
    orient.add_option("--threads", options.threads, "Threads to use [all processors]")
        ->check(CLI::Range(1, 1024));
    orient.add_option("--seed", options.seed, "Seed of the randomly drawn candidate directions")
        ->capture_default_str();
    orient.add_flag("--json", options.isJson, "Print one JSON object instead of a table");
    orient.add_flag("-q,--quiet", options.isQuiet, "No progress bar and no warnings");
    orient.add_flag("-v,--verbose", options.isVerbose, "Print how long each stage took");
}

/// CLI11 prints help and version; everything else is one line for the user.
bool parse(CLI::App& app, int argc, char** argv) {
    try {
        app.parse(argc, argv);
        return true;
    } catch (const CLI::Success& request) {
        app.exit(request);
        return false;
    } catch (const CLI::ParseError& error) {
        throw Failure(ExitCode::kUsage, fmt::format("{}; see tesk-orient --help", error.what()));
    }
}

}  // namespace

std::optional<Options> readOptions(int argc, char** argv) {
    Options options;
    std::string part;
    std::string output;
    std::string unit;
    CLI::App app(kDescription, "tesk-orient");
    app.set_version_flag("--version", "tesk-orient " TESK_VERSION);
    app.footer(kFooter);
    app.require_subcommand(1);
    CLI::App* orient = app.add_subcommand("orient", "Rank the build orientations of a part");
    orient->footer(kFooter);
    addRest(*orient, options, part, output, unit);
    addConfigure(*orient, options.config);
    if (!parse(app, argc, argv)) return std::nullopt;
    options.part = part;
    options.output = output;
    if (!unit.empty()) options.unit = unitNamed(unit);
    return options;
}

}  // namespace App

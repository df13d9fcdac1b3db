#include "options/Options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <optional>
#include <vector>

#include "Failure.h"
#include "Version.h"
#include "options/BatchParser.h"
#include "options/CommonParser.h"
#include "options/OrientParser.h"

namespace App {

namespace {

constexpr const char* kDescription =
    "Finds out in which orientation a part should be 3D-printed, and the smallest box around it.\n"
    "Reads STL, OBJ, PLY, OFF and 3MF files.";

constexpr const char* kFooter = R"(
Examples:
  tesk-orient orient bracket.stl
  tesk-orient orient bracket.stl --output turned.3mf
  tesk-orient orient plate.3mf --output turned.3mf --fits 250x210x210
  tesk-orient orient bracket.obj --units inch --overhang-angle 50 --json
  tesk-orient orient bracket.stl --goal least-support --fits 250x210x210 --keep-off 0,0,1
  tesk-orient orient bracket.stl --support-volume-weight 0 --height-weight 1 --rank 2 -o low.stl
  tesk-orient box bracket.stl
  tesk-orient box bracket.stl --criterion around-axis --axis 0,0,1 --json
  tesk-orient lay-flat bracket.stl --output flat.stl
  tesk-orient batch parts --results results.jsonl --output-dir turned
  tesk-orient batch parts --results results.jsonl --report-dir pages
  tesk-orient batch parts --results boxes.jsonl --command box --include '*.stl' --jobs 4

Exit codes:
  0  done                              3  the part cannot be read
  1  internal error                    4  the output cannot be written
  2  invalid command line              5  no pose is allowed, or none fits;
                                          of a batch: some files failed
                                     130  aborted
)";

struct BoxTexts {
    std::string criterion = nameOf(Criterion::kVolume);
    std::vector<float> axis;
};

constexpr Criterion kCriteria[] = {Criterion::kVolume, Criterion::kBaseArea, Criterion::kBaseHeight,
                                   Criterion::kAroundAxis, Criterion::kPrincipal};

void addBox(CLI::App& box, BoxTexts& texts) {
    std::vector<std::string> names;
    for (const Criterion criterion : kCriteria) names.emplace_back(nameOf(criterion));
    box.add_option("--criterion", texts.criterion,
                   "What the box is smallest in: its volume; the area of its smallest side; its "
                   "height, then its footprint; its cross-section around --axis; or not the "
                   "smallest but along the principal axes, at once")
        ->capture_default_str()
        ->check(CLI::IsMember(names));
    box.add_option("--axis", texts.axis, "Axis x,y,z of --criterion around-axis")
        ->delimiter(',')
        ->expected(3);
}

void take(const BoxTexts& texts, BoxOptions& options) {
    for (const Criterion criterion : kCriteria) {
        if (texts.criterion == nameOf(criterion)) options.criterion = criterion;
    }
    const bool isAroundAxis = options.criterion == Criterion::kAroundAxis;
    if (isAroundAxis != !texts.axis.empty()) {
        throw Failure(
            ExitCode::kUsage,
            isAroundAxis ? "--criterion around-axis needs --axis x,y,z; see tesk-orient --help"
                         : "--axis goes with --criterion around-axis only; see tesk-orient --help");
    }
    if (!isAroundAxis) return;
    options.axis = {texts.axis[0], texts.axis[1], texts.axis[2]};
    const float length = options.axis.GetLength();
    if (!std::isfinite(length) || options.axis.IsZeroLength()) {
        throw Failure(ExitCode::kUsage,
                      "--axis must be a direction, finite and not 0,0,0; see tesk-orient --help");
    }
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

const char* nameOf(Goal goal) {
    switch (goal) {
        case Goal::kBalanced:
            return "balanced";
        case Goal::kLeastSupport:
            return "least-support";
        case Goal::kWeights:
            return "weights";
    }
    return "";
}

const char* nameOf(Criterion criterion) {
    switch (criterion) {
        case Criterion::kVolume:
            return "volume";
        case Criterion::kBaseArea:
            return "base-area";
        case Criterion::kBaseHeight:
            return "base-height";
        case Criterion::kAroundAxis:
            return "around-axis";
        case Criterion::kPrincipal:
            return "principal";
    }
    return "";
}

std::optional<Command> readCommand(int argc, char** argv) {
    OrientOptions orientOptions;
    BoxOptions boxOptions;
    LayFlatOptions layFlatOptions;
    CommonTexts texts;
    OrientTexts orientTexts;
    BoxTexts boxTexts;
    CLI::App app(kDescription, "tesk-orient");
    app.set_version_flag("--version", "tesk-orient " TESK_VERSION);
    app.footer(kFooter);
    app.require_subcommand(1);
    // Windows too takes --options only: /part.stl is a file.
    app.allow_windows_style_options(false);
    CLI::App* orient = app.add_subcommand("orient", "Find the best way to lay a part on the plate");
    addCommon(*orient, orientOptions, texts, "the turned part");
    addThreads(*orient, orientOptions);
    addOrient(*orient, orientOptions, orientTexts);
    CLI::App* box = app.add_subcommand("box", "Find the smallest box around a part");
    addCommon(*box, boxOptions, texts, "the box, as a mesh,");
    addThreads(*box, boxOptions);
    addBox(*box, boxTexts);
    CLI::App* layFlat = app.add_subcommand(
        "lay-flat", "Lay a part flat in its smallest box: longest side along X, shortest upright");
    addCommon(*layFlat, layFlatOptions, texts, "the part laid flat");
    BatchTexts batchTexts;
    CLI::App* batch = addBatch(app, {orient, box, layFlat}, batchTexts);
    for (CLI::App* command : {orient, box, layFlat, batch}) command->footer(kFooter);
    if (!parse(app, argc, argv)) return std::nullopt;
    if (orient->parsed()) {
        take(texts, orientOptions);
        take(*orient, orientTexts, orientOptions);
        return orientOptions;
    }
    if (box->parsed()) {
        take(texts, boxOptions);
        take(boxTexts, boxOptions);
        return boxOptions;
    }
    if (batch->parsed()) return batchOptionsOf(*batch, batchTexts);
    take(texts, layFlatOptions);
    return layFlatOptions;
}

}  // namespace App

#include "options/Options.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <cmath>
#include <locale>
#include <optional>
#include <sstream>
#include <vector>

#include "Failure.h"
#include "Version.h"
#include "options/BatchParser.h"
#include "options/CommonParser.h"
#include "part/FileBytes.h"

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

void addConfigure(CLI::App& orient, OptimizeOrient::Configure& config) {
    const auto weight = [&](const char* name, std::int32_t& value, const char* what) {
        orient.add_option(name, value, what)
            ->capture_default_str()
            ->check(CLI::Range(0, 1'000'000))
            ->group("Weights, with --goal weights");
    };
    weight("--height-weight", config.heightWeight, "Weight of the height: printing time");
    weight("--support-volume-weight", config.supportVolumeWeight,
           "Weight of the support's volume: material");
    weight("--support-area-weight", config.supportAreaWeight,
           "Weight of the overhanging area and of the footprint; large overhanging triangles count "
           "more than their area says, so use it with care");
    weight("--box-volume-weight", config.boxVolumeWeight, "Weight of the bounding box's volume");
    orient
        .add_option(
            "--base-height", config.baseHeight,
            "Height of the lowest point above the plate, mm; -1 leaves the turned part where it is")
        ->capture_default_str()
        ->check(CLI::Range(-1.0f, 1e6f))
        ->group("How support is measured, with --goal weights");
    orient
        .add_flag("--compute-support", config.computeSupport,
                  "Measure support even where both support weights are 0")
        ->group("How support is measured, with --goal weights");
}

/// What the library gives of poses as text or not at all, to be taken over after parsing.
struct PoseTexts {
    std::string goal;
    std::optional<float> overhangAngle;
    std::string fits;
    std::vector<std::string> keepOff;
    std::string page;
    std::string picture;
};

constexpr Goal kGoals[] = {Goal::kBalanced, Goal::kLeastSupport, Goal::kWeights};

/// The options that only the ranking by weights knows.
constexpr const char* kWeightOptions[] = {"--height-weight",       "--support-volume-weight",
                                          "--support-area-weight", "--box-volume-weight",
                                          "--base-height",         "--compute-support"};

void addPoses(CLI::App& orient, PoseTexts& texts) {
    std::vector<std::string> names;
    for (const Goal goal : kGoals) names.emplace_back(nameOf(goal));
    orient
        .add_option(
            "--goal", texts.goal,
            "What a good pose is: support and time in balance; as little support as can be; "
            "or a ranking by weights, which any weight implies [balanced]")
        ->check(CLI::IsMember(names));
    orient
        .add_option("--overhang-angle", texts.overhangAngle,
                    "Slope from the plate below which a downward surface needs support, degrees "
                    "[55; with --goal weights 45]")
        ->check(CLI::Range(0.0f, 90.0f));
    orient.add_option("--fits", texts.fits,
                      "Pass over poses larger than this build volume, mm: 250x210x210");
    orient.add_option("--keep-off", texts.keepOff,
                      "Never set the face that looks along x,y,z down on the plate or on support, "
                      "nor what lies within :angle degrees of it [the overhang angle]");
    orient.add_option("--report", texts.page,
                      "Write a page that shows the poses in 3D, for any browser: .html");
    orient
        .add_option("--picture", texts.picture,
                    "Draw the part as it lies and in the chosen pose: .png or .svg")
        ->check([](const std::string& name) {
            return name.ends_with(".png") || name.ends_with(".svg")
                       ? std::string()
                       : name + ": its name must end in .png or .svg";
        });
}

void addOrient(CLI::App& orient, OrientOptions& options) {
    orient.add_option("--rank", options.rank, "Use the N-th listed pose")
        ->capture_default_str()
        ->check(CLI::Range(1, 12));
    orient
        .add_option("--seed", options.seed,
                    "Seed of the randomly drawn candidate directions, with --goal weights")
        ->capture_default_str();
    orient.add_flag("-v,--verbose", options.isVerbose, "Print how long each stage took");
    addConfigure(orient, options.config);
}

/// Numbers with something between them, all finite; nothing else.
std::vector<float> numbersIn(const std::string& text, char between) {
    std::vector<float> numbers;
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    for (float value = 0.0f; in >> value;) {
        if (!std::isfinite(value)) return {};
        numbers.push_back(value);
        if (in.eof()) return numbers;
        if (in.get() != between) return {};
    }
    return {};
}

UVector3<float> buildVolumeIn(const std::string& text) {
    const std::vector<float> sizes = numbersIn(text, 'x');
    const bool isVolume =
        sizes.size() == 3 && sizes[0] > 0.0f && sizes[1] > 0.0f && sizes[2] > 0.0f;
    if (!isVolume) refuse(fmt::format("--fits {}: not three sizes like 250x210x210", text));
    return {sizes[0], sizes[1], sizes[2]};
}

OptimizeOrient::KeepOff keepOffIn(const std::string& text) {
    const std::size_t colon = text.find(':');
    const std::vector<float> v = numbersIn(text.substr(0, colon), ',');
    OptimizeOrient::KeepOff rule;
    if (v.size() == 3) rule.direction = {v[0], v[1], v[2]};
    if (colon != std::string::npos) {
        const std::vector<float> angle = numbersIn(text.substr(colon + 1), ',');
        rule.angleDeg = angle.size() == 1 && angle[0] <= 180.0f ? angle[0] : -1.0f;
    }
    const bool hasAngle = colon == std::string::npos || rule.angleDeg >= 0.0f;
    if (rule.direction.IsZeroLength() || !hasAngle) {
        refuse(fmt::format("--keep-off {}: not a direction like 0,0,1 or 0,0,1:30", text));
    }
    return rule;
}

void takeGoal(const CLI::App& orient, const PoseTexts& texts, OrientOptions& options) {
    for (const Goal goal : kGoals) {
        if (texts.goal == nameOf(goal)) options.goal = goal;
    }
    for (const char* name : kWeightOptions) {
        if (orient.count(name) == 0) continue;
        if (!texts.goal.empty() && options.goal != Goal::kWeights) {
            refuse(fmt::format("{} goes with --goal weights only", name));
        }
        options.goal = Goal::kWeights;
    }
}

void take(const CLI::App& orient, const PoseTexts& texts, OrientOptions& options) {
    takeGoal(orient, texts, options);
    if (options.goal == Goal::kWeights && (!texts.fits.empty() || !texts.keepOff.empty())) {
        refuse("--fits and --keep-off do not go with --goal weights");
    }
    if (options.goal == Goal::kWeights && !(texts.page + texts.picture).empty()) {
        refuse("--report and --picture do not go with --goal weights");
    }
    options.page = pathOf(texts.page);
    options.picture = pathOf(texts.picture);
    OptimizeOrient::PoseGoal& goal = options.poseGoal;
    if (options.goal == Goal::kLeastSupport) goal = OptimizeOrient::PoseGoal::leastSupport();
    if (texts.overhangAngle) {
        goal.overhangAngleDeg = *texts.overhangAngle;
        options.config.overhangAngle = *texts.overhangAngle;
    }
    if (!texts.fits.empty()) goal.buildVolume = buildVolumeIn(texts.fits);
    for (const std::string& text : texts.keepOff) goal.keepOff.push_back(keepOffIn(text));
}

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
    PoseTexts poseTexts;
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
    addPoses(*orient, poseTexts);
    addOrient(*orient, orientOptions);
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
        take(*orient, poseTexts, orientOptions);
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

#include "options/OrientParser.h"

#include <fmt/format.h>

#include <cmath>
#include <locale>
#include <sstream>

#include "options/CommonParser.h"
#include "part/PathText.h"

namespace App {

namespace {

constexpr Goal kGoals[] = {Goal::kBalanced, Goal::kLeastSupport, Goal::kWeights};

/// The options that only the ranking by weights knows.
constexpr const char* kWeightOptions[] = {"--height-weight",       "--support-volume-weight",
                                          "--support-area-weight", "--box-volume-weight",
                                          "--base-height",         "--compute-support"};

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

void addPoses(CLI::App& orient, OrientTexts& texts) {
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

void takeGoal(const CLI::App& orient, const OrientTexts& texts, OrientOptions& options) {
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

}  // namespace

void addOrient(CLI::App& orient, OrientOptions& options, OrientTexts& texts) {
    addPoses(orient, texts);
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

void take(const CLI::App& orient, const OrientTexts& texts, OrientOptions& options) {
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

}  // namespace App

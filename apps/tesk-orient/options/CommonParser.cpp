#include "options/CommonParser.h"

#include <optional>
#include <vector>

#include "Failure.h"
#include "TeskPartFiles/PartFiles.h"
#include "part/PathText.h"

namespace App {

namespace {

constexpr const char* kObjectsGroup = "Files of several objects";

void addParts(CLI::App& command, CommonOptions& options, CommonTexts& texts) {
    command
        .add_flag("--together", texts.isTogether,
                  "Take all objects of a 3MF as one part, as they lie")
        ->group(kObjectsGroup);
    command
        .add_flag("--split", texts.isSplit,
                  "Take each body of an STL, OBJ, PLY or OFF as a part; bodies inside another stay "
                  "with it")
        ->group(kObjectsGroup);
    command
        .add_option("--object", options.objects,
                    "Take this object, by its name or id, and leave the others as they are; may be "
                    "given several times")
        ->allow_extra_args(false)
        ->group(kObjectsGroup);
}

void takeParts(const CommonTexts& texts, CommonOptions& options) {
    if (texts.isTogether && texts.isSplit) refuse("--together and --split contradict each other");
    if (texts.isTogether) options.parts = Parts::kTogether;
    if (texts.isSplit) options.parts = Parts::kSplit;
    if (options.part.empty()) return;
    if (texts.isSplit && Tesk::formatOf(options.part) == Tesk::PartFormat::kThreeMf) {
        refuse("--split is for STL, OBJ, PLY and OFF files; a 3MF holds its objects apart already");
    }
    if (!options.objects.empty() && !isByObject(options)) {
        refuse(texts.isTogether ? "--object does not go with --together"
                                : "--object needs a 3MF file, or --split");
    }
}

}  // namespace

bool isByObject(const CommonOptions& options) {
    if (options.parts != Parts::kByFormat) return options.parts == Parts::kSplit;
    return Tesk::formatOf(options.part) == Tesk::PartFormat::kThreeMf;
}

[[noreturn]] void refuse(const std::string& why) {
    throw Failure(ExitCode::kUsage, why + "; see tesk-orient --help");
}

void addCommon(CLI::App& command, CommonOptions& options, CommonTexts& texts,
               const std::string& whatOutputIs) {
    std::vector<std::string> units;
    for (const LengthUnit& known : lengthUnits()) units.emplace_back(known.name);
    command.add_option("PART", texts.part, "The part's file: .stl, .obj, .ply, .off or .3mf")
        ->required();
    command.add_option("-o,--output", texts.output,
                       "Write " + whatOutputIs + " here; the extension decides the format");
    command
        .add_option("--units", texts.unit,
                    "Unit of the file's numbers [mm; for 3MF the file's own]")
        ->check(CLI::IsMember(units));
    addParts(command, options, texts);
    command.add_flag("--json", options.isJson, "Print one JSON object instead of a table");
    command.add_flag("-q,--quiet", options.isQuiet, "No progress bar and no warnings");
}

void addThreads(CLI::App& command, CommonOptions& options) {
    command.add_option("--threads", options.threads, "Threads to use [all processors]")
        ->check(CLI::Range(1, 1024));
}

void take(const CommonTexts& texts, CommonOptions& options) {
    options.part = pathOf(texts.part);
    options.output = pathOf(texts.output);
    if (!texts.unit.empty()) options.unit = unitNamed(texts.unit);
    takeParts(texts, options);
}

}  // namespace App

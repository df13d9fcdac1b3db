#include "options/BatchParser.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <set>
#include <variant>

#include "options/CommonParser.h"
#include "options/Options.h"
#include "part/PathText.h"

namespace App {

namespace {

constexpr const char* kCommandGroup = "Options of the command";

/// What a batch decides itself, or asks for in its own way.
const std::set<std::string> kOwnOptions = {"--help", "--output", "--report",  "--picture",
                                           "--json", "--quiet",  "--threads", "--verbose"};

/// A copy that takes the same words on the command line, one value at a time where any number is
/// allowed, as inputs may follow.
void addCopy(CLI::App& batch, const CLI::Option& option, const std::string& name) {
    const std::string text = option.get_description();
    if (option.get_items_expected_max() == 0) {
        batch.add_flag(name, text)->group(kCommandGroup);
        return;
    }
    CLI::Option* const copy = batch.add_option(name, text)
                                  ->type_size(1)
                                  ->group(kCommandGroup)
                                  ->delimiter(option.get_delimiter());
    copy->type_name(option.get_type_name())->default_str(option.get_default_str());
    constexpr int kMany = 1000;
    if (option.get_items_expected_max() >= kMany) {
        copy->expected(1, -1)->allow_extra_args(false);
    } else {
        copy->expected(option.get_items_expected_min(), option.get_items_expected_max());
    }
}

void addCopies(CLI::App& batch, const std::vector<CLI::App*>& commands) {
    for (CLI::App* const command : commands) {
        for (const CLI::Option* option : command->get_options()) {
            if (option->get_lnames().empty()) continue;
            const std::string name = "--" + option->get_lnames().front();
            const bool isThere = batch.get_option_no_throw(name) != nullptr;
            if (!isThere && kOwnOptions.count(name) == 0) addCopy(batch, *option, name);
        }
    }
}

void addOutput(CLI::App& batch, BatchTexts& texts) {
    batch
        .add_option("--results", texts.results,
                    "The file that gets one line of JSON for each part as it ends")
        ->required();
    batch.add_option("--output-dir", texts.outputFolder,
                     "Write the turned parts (of box: the boxes) below this folder");
    batch
        .add_option("--output-format", texts.outputFormat,
                    "Format of what is written there [that of the part]")
        ->check(CLI::IsMember({"stl", "obj", "ply", "off", "3mf"}));
    batch.add_option("--report-dir", texts.reportFolder,
                     "Write a page for each part below this folder, as --report of orient does");
    batch.add_flag("--resume", texts.plain.isResumed,
                   "Go on: skip parts that the results hold for the same content and settings");
    batch.add_flag("--retry-failed", texts.plain.retriesFailed,
                   "With --resume: but not those that failed");
    batch.add_flag("-q,--quiet", texts.plain.isQuiet, "No progress and no failures on the screen");
}

void addJobs(CLI::App& batch, BatchTexts& texts) {
    batch.add_option("--jobs", texts.plain.jobs, "Parts to work on at once [all processors]")
        ->check(CLI::Range(1, 1024));
    batch.add_option("--timeout", texts.timeoutSeconds, "Seconds after which a part is given up")
        ->check(CLI::Range(0.001, 1e7));
    batch
        .add_option("--memory-limit", texts.plain.memoryLimit,
                    "Memory of each job, as 500M or 2G; a part that needs more fails")
        ->transform(CLI::AsSizeValue(/*kb_is_1000=*/false));
}

/// The given options of the command, sorted by name, so that equal settings look the same.
std::vector<std::string> argumentsOf(const CLI::App& batch) {
    std::vector<const CLI::Option*> given;
    for (const CLI::Option* option : batch.get_options()) {
        if (option->get_group() == kCommandGroup && option->count() > 0) given.push_back(option);
    }
    std::sort(given.begin(), given.end(), [](const CLI::Option* a, const CLI::Option* b) {
        return a->get_lnames().front() < b->get_lnames().front();
    });
    std::vector<std::string> arguments;
    for (const CLI::Option* option : given) {
        const std::string name = "--" + option->get_lnames().front();
        const char delimiter = option->get_delimiter();
        if (option->get_items_expected_max() == 0) {
            arguments.push_back(name);
        } else if (delimiter != '\0') {
            arguments.push_back(name + "=" +
                                CLI::detail::join(option->results(), std::string(1, delimiter)));
        } else {
            for (const std::string& value : option->results()) {
                arguments.push_back(name + "=" + value);
            }
        }
    }
    return arguments;
}

/// The command's own parser has the last word.
void refuseWrongArguments(const BatchOptions& options) {
    std::vector<std::string> words = {"tesk-orient", options.command, "part.stl"};
    words.insert(words.end(), options.arguments.begin(), options.arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(word.data());
    const std::optional<Command> command = readCommand(static_cast<int>(argv.size()), argv.data());
    if (options.reportFolder.empty()) return;
    const auto* orient = command ? std::get_if<OrientOptions>(&*command) : nullptr;
    if (orient == nullptr) refuse("--report-dir goes with --command orient only");
    if (orient->goal == Goal::kWeights) refuse("--report-dir does not go with --goal weights");
}

}  // namespace

CLI::App* addBatch(CLI::App& app, const std::vector<CLI::App*>& commands, BatchTexts& texts) {
    CLI::App* const batch =
        app.add_subcommand("batch", "Do the same for many parts, each in a process of its own");
    batch
        ->add_option("INPUT", texts.inputs,
                     "Files, folders to search, or - for a list of both on standard input, "
                     "separated by line feeds or NUL")
        ->required();
    batch
        ->add_option("--include", texts.include,
                     "Take the files of folders that match, as '*.stl' or 'left/**/v?.obj' "
                     "[all that can be read]")
        ->allow_extra_args(false);
    std::vector<std::string> names;
    for (const CLI::App* command : commands) names.push_back(command->get_name());
    batch->add_option("--command", texts.command, "What to do; its options follow here as well")
        ->capture_default_str()
        ->check(CLI::IsMember(names));
    addOutput(*batch, texts);
    addJobs(*batch, texts);
    addCopies(*batch, commands);
    return batch;
}

BatchOptions batchOptionsOf(const CLI::App& batch, const BatchTexts& texts) {
    BatchOptions options = texts.plain;
    for (const std::string& input : texts.inputs) {
        if (input == "-") {
            options.readsList = true;
        } else {
            options.inputs.push_back(pathOf(input));
        }
    }
    options.include = texts.include;
    options.results = pathOf(texts.results);
    options.outputFolder = pathOf(texts.outputFolder);
    options.reportFolder = pathOf(texts.reportFolder);
    if (!texts.outputFormat.empty()) options.outputExtension = "." + texts.outputFormat;
    options.command = texts.command;
    if (batch.count("--timeout") > 0) options.timeoutSeconds = texts.timeoutSeconds;
    options.arguments = argumentsOf(batch);
    refuseWrongArguments(options);
    return options;
}

}  // namespace App

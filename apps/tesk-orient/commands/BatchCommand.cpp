#include "commands/BatchCommand.h"

#include <fmt/format.h>

#include <chrono>
#include <cstdio>
#include <iostream>
#include <system_error>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

#include "Failure.h"
#include "batch/BatchRun.h"
#include "batch/BatchSettings.h"
#include "part/PathText.h"

namespace App {

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

std::vector<BatchInput> inputsOf(const BatchOptions& options) {
    InputRequest request{options.inputs,
                         {},
                         options.include,
                         options.results,
                         {options.outputFolder, options.reportFolder}};
    if (options.readsList) {
#if defined(_WIN32)
        _setmode(_fileno(stdin), _O_BINARY);
#endif
        request.listed = namesIn(readToEnd(std::cin));
    }
    return listInputs(request);
}

void makeOutputFolder(const fs::path& folder) {
    if (folder.empty()) return;
    std::error_code error;
    fs::create_directories(folder, error);
    if (fs::is_directory(folder)) return;
    throw Failure(ExitCode::kOutput,
                  fmt::format("{}: is no folder and cannot be made one", displayName(folder)));
}

void refuseContradictions(const BatchOptions& options) {
    const char* trouble = nullptr;
    if (options.retriesFailed && !options.isResumed) {
        trouble = "--retry-failed goes with --resume only";
    } else if (!options.outputExtension.empty() && options.outputFolder.empty()) {
        trouble = "--output-format goes with --output-dir only";
    }
    if (trouble == nullptr) return;
    throw Failure(ExitCode::kUsage, std::string(trouble) + "; see tesk-orient --help");
}

}  // namespace

void run(const BatchOptions& options) {
    const auto start = Clock::now();
    refuseContradictions(options);
    BatchWork work;
    work.inputs = inputsOf(options);
    work.outputs = planOutputs(work.inputs, options.outputFolder, options.outputExtension);
    work.reports = planOutputs(work.inputs, options.reportFolder, ".html");
    work.settingsHash = settingsHashOf(options);
    makeOutputFolder(options.outputFolder);
    makeOutputFolder(options.reportFolder);
    ResultsFile results = options.isResumed ? ResultsFile::resume(options.results)
                                            : ResultsFile::create(options.results);
    if (options.isResumed) {
        removeLeftovers(work.outputs);
        removeLeftovers(work.reports);
    }
    const BatchCounts counts = runBatch(options, work, results);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    fmt::print("{}", summaryText(counts, seconds));
    std::fflush(stdout);
    if (counts.failed == 0) return;
    throw Failure(ExitCode::kSomeFailed, fmt::format("{} of {} failed; {} says why", counts.failed,
                                                     counts.total, displayName(options.results)));
}

}  // namespace App

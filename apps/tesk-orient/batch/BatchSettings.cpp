#include "batch/BatchSettings.h"

#include <uv.h>

#include <algorithm>
#include <thread>

#include "Failure.h"
#include "Version.h"
#include "batch/BatchFormat.h"
#include "batch/ContentHash.h"

namespace App {

namespace {

constexpr std::size_t kLongestPath = 1u << 16;

std::string ownProgram() {
    std::string name(kLongestPath, '\0');
    std::size_t size = name.size();
    if (uv_exepath(name.data(), &size) != 0) {
        throw Failure(ExitCode::kInternal, "the program's own file is not to be found");
    }
    name.resize(size);
    return name;
}

}  // namespace

int jobCountOf(const BatchOptions& options) {
    if (options.jobs > 0) return options.jobs;
    return static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
}

WorkerSettings workerSettingsOf(const BatchOptions& options) {
    WorkerSettings settings{ownProgram(),
                            {"batch-worker", std::to_string(options.memoryLimit), options.command},
                            options.timeoutSeconds};
    settings.arguments.insert(settings.arguments.end(), options.arguments.begin(),
                              options.arguments.end());
    return settings;
}

std::string settingsHashOf(const BatchOptions& options) {
    Json settings = {{"version", TESK_VERSION},
                     {"command", options.command},
                     {"arguments", options.arguments},
                     {"writesParts", !options.outputFolder.empty()},
                     {"outputExtension", options.outputExtension}};
    if (!options.reportFolder.empty()) settings["writesReports"] = true;
    return contentHash(lineOf(settings));
}

}  // namespace App

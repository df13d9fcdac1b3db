#include "batch/workers/WorkerProcess.h"

#include <fmt/format.h>
#include <omp.h>

#include <condition_variable>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <variant>
#include <vector>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#else
#include <unistd.h>
#endif

#include "Failure.h"
#include "batch/BatchFormat.h"
#include "batch/OutputPlan.h"
#include "batch/workers/ProcessMemory.h"
#include "commands/BoxCommand.h"
#include "commands/Interrupt.h"
#include "commands/LayFlatCommand.h"
#include "commands/OrientCommand.h"
#include "options/Options.h"
#include "part/PathText.h"

namespace App {

namespace {

constexpr std::string_view kName = "batch-worker";
constexpr int kLimitAt = 2;
constexpr int kCommandAt = 3;

/// Where answers go: what was standard output.
std::FILE* takeStandardOutput() {
    std::fflush(stdout);
#if defined(_WIN32)
    const int answers = _dup(1);
    _dup2(2, 1);
    _setmode(answers, _O_BINARY);
    return _fdopen(answers, "wb");
#else
    const int answers = dup(STDOUT_FILENO);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    return fdopen(answers, "wb");
#endif
}

/// The lines of standard input, read by a thread of its own, which ends the process with them.
class JobQueue {
 public:
    /// For the life of the process, as the thread never ends.
    static JobQueue& start() {
        static JobQueue queue;
        std::thread([] {
            for (std::string line; std::getline(std::cin, line);) queue.put(std::move(line));
            Interrupt::endAtOnce(static_cast<int>(ExitCode::kSuccess));
        }).detach();
        return queue;
    }

    std::string take() {
        std::unique_lock lock(m_mutex);
        m_filled.wait(lock, [&] { return !m_lines.empty(); });
        std::string line = std::move(m_lines.front());
        m_lines.pop_front();
        return line;
    }

 private:
    void put(std::string line) {
        const std::lock_guard lock(m_mutex);
        m_lines.push_back(std::move(line));
        m_filled.notify_one();
    }

    std::mutex m_mutex;
    std::condition_variable m_filled;
    std::deque<std::string> m_lines;
};

/// The command with its options and any part. Throws Failure.
Command commandIn(int argc, char** argv) {
    std::string part = "part.stl";
    std::vector<char*> arguments = {argv[0], argv[kCommandAt], part.data()};
    arguments.insert(arguments.end(), argv + kCommandAt + 1, argv + argc);
    std::optional<Command> command =
        readCommand(static_cast<int>(arguments.size()), arguments.data());
    if (!command) throw Failure(ExitCode::kUsage, "a worker needs a command");
    return std::move(*command);
}

Report reportOf(const OrientOptions& options) {
    return orientReport(options);
}
Report reportOf(const BoxOptions& options) {
    return boxReport(options);
}
Report reportOf(const LayFlatOptions& options) {
    return layFlatReport(options);
}
Report reportOf(const BatchOptions&) {
    throw Failure(ExitCode::kUsage, "a batch is no job of a batch");
}

void fitCommon(CommonOptions& options, const WorkerJob& job) {
    options.part = pathOf(job.input);
    options.output = pathOf(job.output);
    options.threads = 1;
    options.isJson = true;
    options.isQuiet = true;
}
void fit(OrientOptions& options, const WorkerJob& job) {
    fitCommon(options, job);
    options.page = pathOf(job.report);
}
void fit(BoxOptions& options, const WorkerJob& job) {
    fitCommon(options, job);
}
void fit(LayFlatOptions& options, const WorkerJob& job) {
    fitCommon(options, job);
}
void fit(BatchOptions&, const WorkerJob&) {}

Json work(Command command, const WorkerJob& job) {
    if (!job.output.empty()) makeFolderFor(pathOf(job.output), pathOf(job.folder));
    if (!job.report.empty()) makeFolderFor(pathOf(job.report), pathOf(job.reportFolder));
    return std::visit(
        [&](auto& options) {
            fit(options, job);
            return reportOf(options).json;
        },
        command);
}

Json errorOf(const char* code, const std::string& text) {
    return {{"code", code}, {"text", text}};
}

/// The answer's "result" or "error".
Json outcomeOf(const Command& command, const WorkerJob& job) {
    const std::string noMemory = job.input + ": not enough memory";
    try {
        return {{"result", work(command, job)}};
    } catch (const OutOfMemory& failure) {
        return {{"error", errorOf(kOutOfMemory, failure.what())}};
    } catch (const Failure& failure) {
        return {{"error", errorOf(codeNameOf(failure.code()), failure.what())}};
    } catch (const std::bad_alloc&) {
        return {{"error", errorOf(kOutOfMemory, noMemory)}};
    } catch (const std::length_error&) {
        return {{"error", errorOf(kOutOfMemory, noMemory)}};
    } catch (const std::exception& error) {
        return {{"error", errorOf("internal", job.input + ": " + error.what())}};
    }
}

/// Whether the batch heard it.
bool say(std::FILE* answers, const Json& object) {
    const std::string line = lineOf(object);
    return std::fwrite(line.data(), 1, line.size(), answers) == line.size() &&
           std::fflush(answers) == 0;
}

void serve(const Command& command, JobQueue& jobs, std::FILE* answers) {
    bool isHeard = say(answers, {{"ready", true}});
    while (isHeard) {
        const std::optional<WorkerJob> job = jobIn(jobs.take());
        if (!job) return;
        resetPeakMemory();
        Json answer = {{"job", job->id}};
        answer.update(outcomeOf(command, *job));
        if (const auto bytes = peakMemoryBytes()) answer["peakMemoryBytes"] = *bytes;
        isHeard = say(answers, answer);
    }
}

}  // namespace

bool isWorkerProcess(int argc, char** argv) {
    return argc > kCommandAt && argv[1] == kName;
}

int runWorkerProcess(int argc, char** argv) {
    for (const int signal : {SIGINT, SIGTERM}) (void)std::signal(signal, SIG_IGN);
#if !defined(_WIN32)
    (void)std::signal(SIGXFSZ, SIG_IGN);  // the write says that it failed
#endif
    std::FILE* const answers = takeStandardOutput();
    try {
        const Command command = commandIn(argc, argv);
        omp_set_num_threads(1);
        volunteerWhenMemoryRunsOut();
        JobQueue& jobs = JobQueue::start();
        const std::uint64_t limit = std::strtoull(argv[kLimitAt], nullptr, 10);
        if (limit > 0 && !limitMemory(limit)) {
            throw Failure(ExitCode::kInternal, "the system takes no memory limit");
        }
        if (answers != nullptr) serve(command, jobs, answers);
        return static_cast<int>(ExitCode::kSuccess);
    } catch (const std::exception& error) {
        fmt::print(stderr, "tesk-orient: a worker cannot start: {}\n", error.what());
        return static_cast<int>(ExitCode::kInternal);
    }
}

}  // namespace App

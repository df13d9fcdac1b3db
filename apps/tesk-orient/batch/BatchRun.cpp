#include "batch/BatchRun.h"

#include <fmt/format.h>
#include <uv.h>

#include <algorithm>
#include <deque>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

#include "Failure.h"
#include "TeskDebug/Exception.h"
#include "batch/Background.h"
#include "batch/BatchSettings.h"
#include "batch/ContentHash.h"
#include "batch/IgnoredSignals.h"
#include "batch/workers/WorkerPool.h"
#include "commands/Interrupt.h"
#include "part/PathText.h"

namespace App {

namespace {

/// Less than what Interrupt waits for.
constexpr std::uint64_t kTickMs = 20;
constexpr double kSyncSeconds = 1.0;

bool isMissing(const std::filesystem::path& page) {
    std::error_code error;
    return !page.empty() && !std::filesystem::exists(page, error);
}

using HeldKey = std::pair<std::string, std::string>;  ///< path, hash

class Run {
 public:
    Run(const BatchOptions& options, const BatchWork& work, ResultsFile& results);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    BatchCounts toEnd();

 private:
    void lookAhead();
    void identified(std::size_t index, std::optional<FileIdentity> identity);
    bool isHeld(std::size_t index);
    std::optional<WorkerJob> nextJob();
    void jobEnded(const WorkerJob& job, const JobEnd& end);
    BatchEntry entryOf(std::size_t index) const;
    void removeLeftoversOf(std::size_t index) const;
    void refuse(std::size_t index, const char* code, const std::string& text);
    void write(const BatchEntry& entry);
    void finishIfDone();
    void tick();
    void syncNowAndThen();
    void stop();
    void endTicks();
    double seconds() const { return static_cast<double>(uv_hrtime() - m_start) * 1e-9; }

    const BatchOptions& m_options;
    const BatchWork& m_work;
    ResultsFile& m_results;
    std::map<HeldKey, std::string> m_held;  ///< to the status
    BatchProgress m_progress;
    BatchCounts m_counts;
    uv_loop_t m_loop{};
    uv_timer_t m_ticks{};
    std::optional<WorkerPool> m_pool;
    std::uint64_t m_start = uv_hrtime();
    std::vector<std::optional<FileIdentity>> m_identities;
    std::size_t m_next = 0;         ///< the first input that was not looked at
    std::size_t m_identifying = 0;  ///< inputs that are being looked at
    std::deque<std::size_t> m_ready;
    std::set<std::size_t> m_working;
    double m_syncedAt = 0.0;
    bool m_isSyncing = false;
    bool m_isStopped = false;
    std::exception_ptr m_failure;
    std::unique_lock<std::mutex> m_hold;
};

Run::Run(const BatchOptions& options, const BatchWork& work, ResultsFile& results)
    : m_options(options),
      m_work(work),
      m_results(results),
      m_progress(!options.isQuiet),
      m_identities(work.inputs.size()) {
    m_counts.total = work.inputs.size();
    for (const HeldLine& line : results.held()) {
        const bool counts = line.settingsHash == work.settingsHash && !line.hash.empty();
        if (counts) m_held[{line.path, line.hash}] = line.status;
    }
    uv_loop_init(&m_loop);
    uv_timer_init(&m_loop, &m_ticks);
    m_ticks.data = this;
}

Run::~Run() {
    uv_loop_close(&m_loop);
}

BatchCounts Run::toEnd() {
    uv_timer_start(
        &m_ticks, [](uv_timer_t* timer) { static_cast<Run*>(timer->data)->tick(); }, kTickMs,
        kTickMs);
    const auto most = static_cast<int>(std::min<std::size_t>(m_work.inputs.size(), 1024));
    m_pool.emplace(&m_loop, workerSettingsOf(m_options), std::min(jobCountOf(m_options), most),
                   WorkerPool::Events{
                       [this] { return nextJob(); },
                       [this](const WorkerJob& job, const JobEnd& end) { jobEnded(job, end); },
                       [this](const std::string& why) {
                           m_failure = std::make_exception_ptr(Failure(ExitCode::kInternal, why));
                           stop();
                       }});
    lookAhead();
    finishIfDone();
    uv_run(&m_loop, UV_RUN_DEFAULT);
    // A worker that had to be killed left its file.
    for (const std::size_t index : m_working) removeLeftoversOf(index);
    if (m_failure) std::rethrow_exception(m_failure);
    m_results.sync();
    return m_counts;
}

void Run::lookAhead() {
    const std::size_t most = 2 * static_cast<std::size_t>(jobCountOf(m_options)) + 2;
    while (!m_isStopped && m_next < m_work.inputs.size() && m_ready.size() + m_identifying < most) {
        const std::size_t index = m_next++;
        ++m_identifying;
        auto identity = std::make_shared<std::optional<FileIdentity>>();
        inBackground(
            &m_loop, [this, index, identity] { *identity = identify(m_work.inputs[index].path); },
            [this, index, identity] { identified(index, std::move(*identity)); });
    }
}

void Run::identified(std::size_t index, std::optional<FileIdentity> identity) {
    --m_identifying;
    if (m_isStopped) return;
    m_identities[index] = std::move(identity);
    const BatchInput& input = m_work.inputs[index];
    const PlannedOutput& output = m_work.outputs[index];
    const PlannedOutput& report = m_work.reports[index];
    if (isHeld(index)) {
        ++m_counts.skipped;
    } else if (!input.problem.empty()) {
        refuse(index, "cannot-read", displayName(input.path) + ": " + input.problem);
    } else if (!output.problem.empty()) {
        refuse(index, "cannot-write", displayName(output.path) + ": " + output.problem);
    } else if (!report.problem.empty()) {
        refuse(index, "cannot-write", displayName(report.path) + ": " + report.problem);
    } else {
        m_ready.push_back(index);
        m_pool->wake();
    }
    lookAhead();
    finishIfDone();
}

bool Run::isHeld(std::size_t index) {
    const auto& identity = m_identities[index];
    if (!identity) return false;
    const auto held = m_held.find({displayName(m_work.inputs[index].path), identity->hash});
    if (held == m_held.end()) return false;
    const bool isOk = held->second == "ok";
    if (!isOk && m_options.retriesFailed) return false;
    if (isOk && isMissing(m_work.reports[index].path)) return false;
    if (!isOk) ++m_counts.failed;
    return true;
}

std::optional<WorkerJob> Run::nextJob() {
    if (m_ready.empty() || m_isStopped) return std::nullopt;
    const std::size_t index = m_ready.front();
    m_ready.pop_front();
    m_working.insert(index);
    WorkerJob job{index,
                  displayName(m_work.inputs[index].path),
                  displayName(m_work.outputs[index].path),
                  displayName(m_options.outputFolder),
                  displayName(m_work.reports[index].path),
                  displayName(m_options.reportFolder)};
    lookAhead();
    return job;
}

BatchEntry Run::entryOf(std::size_t index) const {
    BatchEntry entry;
    entry.path = displayName(m_work.inputs[index].path);
    entry.identity = m_identities[index];
    entry.settingsHash = m_work.settingsHash;
    return entry;
}

void Run::removeLeftoversOf(std::size_t index) const {
    removeLeftovers(m_work.outputs[index].path);
    removeLeftovers(m_work.reports[index].path);
}

void Run::refuse(std::size_t index, const char* code, const std::string& text) {
    BatchEntry entry = entryOf(index);
    entry.status = "failed";
    entry.errorCode = code;
    entry.errorText = text;
    write(entry);
}

void Run::jobEnded(const WorkerJob& job, const JobEnd& end) {
    m_working.erase(job.id);
    BatchEntry entry = entryOf(job.id);
    entry.seconds = end.seconds;
    if (end.how == JobEnd::How::kAnswered) {
        takeAnswer(entry, end.answer);
        if (entry.status == "ok") entry.output = job.output;
        if (entry.status == "ok") entry.report = job.report;
    } else {
        const bool isTimeout = end.how == JobEnd::How::kTimedOut;
        entry.status = entry.errorCode = isTimeout ? "timeout" : "crashed";
        entry.errorText =
            job.input + (isTimeout ? fmt::format(": took longer than {:g} s",
                                                 m_options.timeoutSeconds.value_or(0.0))
                                   : ": the process that worked on it " + end.cause);
        removeLeftoversOf(job.id);
    }
    write(entry);
    finishIfDone();
}

void Run::write(const BatchEntry& entry) {
    if (m_isStopped) return;
    try {
        m_results.append(lineOf(entry));
    } catch (const Failure&) {
        m_failure = std::current_exception();
        stop();
        return;
    }
    ++m_counts.done;
    if (entry.status != "ok") {
        ++m_counts.failed;
        m_progress.failure(entry.errorText);
    }
}

void Run::finishIfDone() {
    if (m_counts.left() > 0 || m_isStopped) return;
    endTicks();
    m_pool->finish();
}

void Run::tick() {
    if (Interrupt::isRequested()) {
        // The process stays until the workers are gone.
        m_hold = Interrupt::hold();
        m_failure = std::make_exception_ptr(Tesk::AbortException("Aborting..."));
        stop();
        return;
    }
    m_progress.show(m_counts, seconds());
    syncNowAndThen();
}

void Run::syncNowAndThen() {
    if (m_isSyncing || seconds() < m_syncedAt + kSyncSeconds) return;
    m_isSyncing = true;
    auto failure = std::make_shared<std::exception_ptr>();
    inBackground(
        &m_loop,
        [this, failure] {
            try {
                m_results.sync();
            } catch (const Failure&) {
                *failure = std::current_exception();
            }
        },
        [this, failure] {
            m_isSyncing = false;
            m_syncedAt = seconds();
            if (!*failure || m_isStopped) return;
            m_failure = *failure;
            stop();
        });
}

void Run::stop() {
    if (m_isStopped) return;
    m_isStopped = true;
    endTicks();
    if (m_pool) m_pool->stop();
}

void Run::endTicks() {
    auto* const handle = reinterpret_cast<uv_handle_t*>(&m_ticks);
    if (uv_is_closing(handle) == 0) uv_close(handle, nullptr);
}

}  // namespace

BatchCounts runBatch(const BatchOptions& options, const BatchWork& work, ResultsFile& results) {
    const IgnoredSignals ignored;
    Run run(options, work, results);
    return run.toEnd();
}

}  // namespace App

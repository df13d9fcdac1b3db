#include "batch/workers/WorkerPool.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace App {

namespace {

/// One may be killed by somebody while it starts; several in a row mean that none can start.
constexpr int kMostFailedStarts = 3;

}  // namespace

WorkerPool::WorkerPool(uv_loop_t* loop, WorkerSettings settings, int count, Events events)
    : m_loop(loop), m_settings(std::move(settings)), m_events(std::move(events)) {
    for (int i = 0; i < count && !m_isStopped; ++i) add();
}

void WorkerPool::add() {
    // The worker does not call before it is at its place.
    auto place = std::make_shared<Worker*>(nullptr);
    auto worker =
        std::make_unique<Worker>(m_loop, m_settings,
                                 Worker::Events{[this, place] { feed(**place); },
                                                [this](const WorkerJob& job, const JobEnd& end) {
                                                    if (!m_isStopped) m_events.jobEnded(job, end);
                                                },
                                                [this, place] { remove(**place); }});
    *place = worker.get();
    m_workers.push_back(std::move(worker));
}

void WorkerPool::feed(Worker& worker) {
    m_failedStarts = 0;
    if (!m_isFinishing) {
        if (std::optional<WorkerJob> job = m_events.nextJob()) {
            worker.give(std::move(*job));
            return;
        }
    }
    if (m_isFinishing) worker.end();
}

void WorkerPool::remove(Worker& worker) {
    const bool wasReady = worker.wasReady();
    const int error = worker.startError();
    m_workers.erase(
        std::find_if(m_workers.begin(), m_workers.end(),
                     [&](const std::unique_ptr<Worker>& one) { return one.get() == &worker; }));
    if (m_isFinishing || m_isStopped) return;
    if (!wasReady && ++m_failedStarts >= kMostFailedStarts) {
        fail(error == 0 ? "workers end before they begin"
                        : fmt::format("no worker can be started: {}", uv_strerror(error)));
        return;
    }
    add();
}

void WorkerPool::fail(const std::string& why) {
    stop();
    m_events.failed(why);
}

void WorkerPool::wake() {
    // A worker is told of its job at once, so none is idle twice.
    for (std::size_t i = 0; i < m_workers.size(); ++i) {
        if (m_workers[i]->isIdle()) feed(*m_workers[i]);
    }
}

void WorkerPool::finish() {
    m_isFinishing = true;
    wake();
}

void WorkerPool::stop() {
    m_isStopped = true;
    m_isFinishing = true;
    for (const auto& worker : m_workers) worker->end();
}

}  // namespace App

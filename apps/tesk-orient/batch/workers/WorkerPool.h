#pragma once

#include <uv.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "batch/workers/Worker.h"

namespace App {

/// Worker processes that take jobs until there are none. A worker that ends is replaced as long as
/// it may be needed.
class WorkerPool {
 public:
    struct Events {
        /// The next job; empty where there is none now.
        std::function<std::optional<WorkerJob>()> nextJob;
        std::function<void(const WorkerJob&, const JobEnd&)> jobEnded;
        /// No worker can be started: the text says why. The pool is stopped then.
        std::function<void(const std::string&)> failed;
    };

    /// Starts `count` workers on the loop, which has to run to its end before the pool goes.
    WorkerPool(uv_loop_t* loop, WorkerSettings settings, int count, Events events);
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// There are jobs again: asks for one for each idle worker.
    void wake();

    /// Has idle workers end, and the others when their job is done. No job is asked for any more.
    void finish();

    /// Has all workers end now. Jobs at work are not heard of any more.
    void stop();

 private:
    void add();
    void feed(Worker& worker);
    void remove(Worker& worker);
    void fail(const std::string& why);

    uv_loop_t* m_loop;
    WorkerSettings m_settings;
    Events m_events;
    std::vector<std::unique_ptr<Worker>> m_workers;
    int m_failedStarts = 0;  ///< since a worker was ready
    bool m_isFinishing = false;
    bool m_isStopped = false;
};

}  // namespace App

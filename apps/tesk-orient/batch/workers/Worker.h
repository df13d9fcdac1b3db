#pragma once

#include <uv.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "batch/BatchFormat.h"

namespace App {

/// How a job ended.
struct JobEnd {
    enum class How { kAnswered, kTimedOut, kCrashed };
    How how = How::kAnswered;
    Json answer;        ///< of kAnswered: the worker's line
    std::string cause;  ///< of kCrashed: what became of the worker, as "was killed by signal 11"
    double seconds = 0.0;
};

/// How workers are started, and how long each of their jobs may take.
struct WorkerSettings {
    std::string program;
    std::vector<std::string> arguments;
    std::optional<double> timeoutSeconds;
};

/// One worker process on a loop of libuv. It lives in a session of its own, so that Ctrl-C reaches
/// the batch only. All calls and callbacks are on the loop's thread. The object must stay until it
/// has called `closed`.
class Worker {
 public:
    struct Events {
        std::function<void()> idle;                                     ///< it waits for a job
        std::function<void(const WorkerJob&, const JobEnd&)> jobEnded;  ///< it may have another
        std::function<void()> closed;                                   ///< the object may go
    };

    /// Starts the process. Where that fails, startError() is not 0 and `closed` follows.
    Worker(uv_loop_t* loop, const WorkerSettings& settings, Events events);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// libuv's error, or 0.
    int startError() const { return m_startError; }
    bool wasReady() const { return m_wasReady; }
    bool isIdle() const { return m_wasReady && !m_job && !m_isEnding; }

    /// Of an idle worker only.
    void give(WorkerJob job);

    /// Has the process end, whether it is at work or not; a job that it has ends as a crash. A
    /// process that does not listen is killed.
    void end();

 private:
    void start();
    void read(ssize_t count, const uv_buf_t* buffer);
    void takeLine(const std::string& line);
    void finishJob(JobEnd end);
    void gone();
    void close();
    void loseHandle();
    double secondsOfJob() const;

    uv_loop_t* m_loop;
    const WorkerSettings& m_settings;
    Events m_events;
    uv_process_t m_process{};
    uv_pipe_t m_toWorker{};
    uv_pipe_t m_fromWorker{};
    uv_timer_t m_timer{};
    int m_openHandles = 0;
    int m_startError = 0;
    bool m_wasReady = false;
    bool m_isEnding = false;
    bool m_isTimedOut = false;
    bool m_hasExited = false;
    bool m_hasSaidAll = false;
    std::string m_exit;
    std::string m_unread;
    std::vector<char> m_buffer;
    std::optional<WorkerJob> m_job;
    std::uint64_t m_jobStart = 0;
};

}  // namespace App

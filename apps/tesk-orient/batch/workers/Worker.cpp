#include "batch/workers/Worker.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <utility>

namespace App {

namespace {

/// How long a worker may take to remove what is half written before it is killed.
constexpr std::uint64_t kGraceMs = 1000;
constexpr std::size_t kReadSize = 1u << 16;

Worker& workerOf(void* data) {
    return *static_cast<Worker*>(data);
}

template <class Handle>
uv_handle_t* handleOf(Handle& handle) {
    return reinterpret_cast<uv_handle_t*>(&handle);
}

template <class Handle>
uv_stream_t* streamOf(Handle& handle) {
    return reinterpret_cast<uv_stream_t*>(&handle);
}

/// A line on its way.
struct Writing {
    uv_write_t request{};
    std::string text;
};

std::string exitText(std::int64_t status, int signal) {
    if (signal != 0) return fmt::format("was killed by signal {}", signal);
    return fmt::format("ended with code {}", status);
}

}  // namespace

Worker::Worker(uv_loop_t* loop, const WorkerSettings& settings, Events events)
    : m_loop(loop), m_settings(settings), m_events(std::move(events)), m_buffer(kReadSize) {
    for (void** data : {&m_process.data, &m_toWorker.data, &m_fromWorker.data, &m_timer.data}) {
        *data = this;
    }
    uv_pipe_init(loop, &m_toWorker, 0);
    uv_pipe_init(loop, &m_fromWorker, 0);
    uv_timer_init(loop, &m_timer);
    m_openHandles = 4;
    start();
    if (m_startError != 0) close();
}

Worker::~Worker() = default;

void Worker::start() {
    std::vector<char*> arguments = {const_cast<char*>(m_settings.program.c_str())};
    for (const std::string& argument : m_settings.arguments) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    uv_stdio_container_t streams[3] = {};
    streams[0].flags = static_cast<uv_stdio_flags>(UV_CREATE_PIPE | UV_READABLE_PIPE);
    streams[0].data.stream = streamOf(m_toWorker);
    streams[1].flags = static_cast<uv_stdio_flags>(UV_CREATE_PIPE | UV_WRITABLE_PIPE);
    streams[1].data.stream = streamOf(m_fromWorker);
    streams[2].flags = UV_INHERIT_FD;
    streams[2].data.fd = 2;
    uv_process_options_t options{};
    options.file = m_settings.program.c_str();
    options.args = arguments.data();
    options.flags = UV_PROCESS_DETACHED | UV_PROCESS_WINDOWS_HIDE;
    options.stdio_count = 3;
    options.stdio = streams;
    options.exit_cb = [](uv_process_t* process, std::int64_t status, int signal) {
        Worker& worker = workerOf(process->data);
        worker.m_hasExited = true;
        worker.m_exit = exitText(status, signal);
        if (worker.m_hasSaidAll) worker.gone();
    };
    m_startError = uv_spawn(m_loop, &m_process, &options);
    if (m_startError != 0) return;
    uv_read_start(
        streamOf(m_fromWorker),
        [](uv_handle_t* pipe, std::size_t, uv_buf_t* buffer) {
            std::vector<char>& bytes = workerOf(pipe->data).m_buffer;
            *buffer = uv_buf_init(bytes.data(), static_cast<unsigned int>(bytes.size()));
        },
        [](uv_stream_t* pipe, ssize_t count, const uv_buf_t* buffer) {
            workerOf(pipe->data).read(count, buffer);
        });
}

void Worker::read(ssize_t count, const uv_buf_t* buffer) {
    if (count < 0) {
        m_hasSaidAll = true;
        uv_read_stop(streamOf(m_fromWorker));
        if (m_hasExited) {
            gone();
        } else {
            end();
        }
        return;
    }
    m_unread.append(buffer->base, static_cast<std::size_t>(count));
    std::size_t begin = 0;
    for (std::size_t feed; (feed = m_unread.find('\n', begin)) != std::string::npos;
         begin = feed + 1) {
        takeLine(m_unread.substr(begin, feed - begin));
    }
    m_unread.erase(0, begin);
}

void Worker::takeLine(const std::string& line) {
    Json answer = Json::parse(line, nullptr, /*allow_exceptions=*/false);
    if (!m_wasReady) {
        m_wasReady = answer.is_object() && answer.contains("ready");
        if (isIdle()) m_events.idle();
        return;
    }
    const bool isMine = m_job && answer.is_object() && answer.value("job", Json()) == m_job->id;
    if (!isMine) {
        end();
        return;
    }
    finishJob({JobEnd::How::kAnswered, std::move(answer), {}, secondsOfJob()});
}

void Worker::give(WorkerJob job) {
    auto writing = std::make_unique<Writing>();
    writing->text = lineOf(job);
    writing->request.data = writing.get();
    m_job = std::move(job);
    m_jobStart = uv_hrtime();
    const uv_buf_t buffer =
        uv_buf_init(writing->text.data(), static_cast<unsigned int>(writing->text.size()));
    // A worker that cannot be reached is about to end, which is noticed there.
    const int error =
        uv_write(&writing->request, streamOf(m_toWorker), &buffer, 1,
                 [](uv_write_t* request, int) { delete static_cast<Writing*>(request->data); });
    if (error == 0) (void)writing.release();
    if (!m_settings.timeoutSeconds) return;
    const auto timeoutMs =
        static_cast<std::uint64_t>(std::ceil(*m_settings.timeoutSeconds * 1000.0));
    uv_update_time(m_loop);
    uv_timer_start(
        &m_timer,
        [](uv_timer_t* timer) {
            Worker& worker = workerOf(timer->data);
            worker.m_isTimedOut = true;
            worker.end();
        },
        timeoutMs, 0);
}

void Worker::end() {
    if (m_isEnding) return;
    m_isEnding = true;
    // The end of its input tells the worker to end.
    if (uv_is_closing(handleOf(m_toWorker)) == 0) {
        uv_close(handleOf(m_toWorker), [](uv_handle_t* h) { workerOf(h->data).loseHandle(); });
    }
    uv_timer_start(
        &m_timer,
        [](uv_timer_t* timer) {
            Worker& worker = workerOf(timer->data);
            if (!worker.m_hasExited) uv_process_kill(&worker.m_process, SIGKILL);
        },
        kGraceMs, 0);
}

void Worker::finishJob(JobEnd end) {
    if (!m_isEnding) uv_timer_stop(&m_timer);
    const WorkerJob job = std::move(*m_job);
    m_job.reset();
    // The worker goes on while what it did is written down.
    if (isIdle()) m_events.idle();
    m_events.jobEnded(job, end);
}

void Worker::gone() {
    if (m_job) {
        const auto how = m_isTimedOut ? JobEnd::How::kTimedOut : JobEnd::How::kCrashed;
        finishJob({how, {}, m_exit, secondsOfJob()});
    }
    close();
}

void Worker::close() {
    m_isEnding = true;
    for (uv_handle_t* handle :
         {handleOf(m_process), handleOf(m_toWorker), handleOf(m_fromWorker), handleOf(m_timer)}) {
        if (uv_is_closing(handle) != 0) continue;
        uv_close(handle, [](uv_handle_t* h) { workerOf(h->data).loseHandle(); });
    }
}

void Worker::loseHandle() {
    if (--m_openHandles > 0) return;
    // The object goes in the course of the call.
    const auto closed = std::move(m_events.closed);
    closed();
}

double Worker::secondsOfJob() const {
    return static_cast<double>(uv_hrtime() - m_jobStart) * 1e-9;
}

}  // namespace App

#include "TeskDebug/StopWatchLog.h"

#include <mutex>
#include <utility>

namespace {

struct SharedSink {
    std::mutex mutex;
    StopWatchLog::Sink sink;
};

SharedSink& sharedSink() {
    static SharedSink shared;
    return shared;
}

}  // namespace

StopWatchLog::StopWatchLog() : m_stageStart(std::chrono::steady_clock::now()) {}

void StopWatchLog::logElapse(const char* label) {
    const auto now = std::chrono::steady_clock::now();
    const std::chrono::duration<double> elapsed = now - std::exchange(m_stageStart, now);
    SharedSink& shared = sharedSink();
    const std::lock_guard lock(shared.mutex);
    if (shared.sink) shared.sink(label, elapsed.count());
}

StopWatchLog::Sink StopWatchLog::setSink(Sink sink) {
    SharedSink& shared = sharedSink();
    const std::lock_guard lock(shared.mutex);
    return std::exchange(shared.sink, std::move(sink));
}

#pragma once

#include <chrono>
#include <functional>

#include "TeskDebug/Export.h"

/// Times the stages of a computation. Each call to logElapse() passes the stage's label and the
/// time since the previous one (or since construction) to the process's sink.
///
/// One object belongs to one thread; different objects may log from different threads at once.
class TESK_DEBUG_API StopWatchLog {
 public:
    /// Receives a label and the stage's seconds on the thread that logs; calls never overlap.
    using Sink = std::function<void(const char* label, double seconds)>;

    StopWatchLog();

    /// Ends the current stage under this label and starts the next.
    void logElapse(const char* label);

    /// Sets the sink of all logs of this process; an empty sink (the default) drops them. The sink
    /// must not throw and must not log. Returns the sink that it replaces.
    static Sink setSink(Sink sink);

 private:
    std::chrono::steady_clock::time_point m_stageStart;
};

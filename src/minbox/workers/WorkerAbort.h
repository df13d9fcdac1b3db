#pragma once

#include <atomic>

#include "TeskDebug/Exception.h"

namespace Tesk::minbox {

/// Runs a worker thread's part of a search. A Tesk::AbortException that the progress callback
/// throws there does not leave the thread: it sets the flag, which all threads of the search read
/// and then end. The calling thread joins them and calls throwIfAborted().
template <class Work>
void workUntilAborted(std::atomic<bool>& isAborted, Work work) {
    try {
        work();
    } catch (const Tesk::AbortException&) {
        isAborted = true;
    }
}

/// Throws the exception with which an aborted search leaves the call.
[[noreturn]] inline void throwAborted() {
    throw Tesk::AbortException("Aborting...");
}

inline void throwIfAborted(const std::atomic<bool>& isAborted) {
    if (isAborted) throwAborted();
}

}  // namespace Tesk::minbox

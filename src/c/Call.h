#pragma once

#include <atomic>
#include <functional>

#include "teskorient.h"

namespace Tesk::c {

/// How a host wants a computation to run. While it lives, OpenMP uses as many threads as the host
/// said on this thread.
class Call {
 public:
    /// @param call  null: all threads, no progress. Throws CallError if it makes no sense.
    explicit Call(const tesk_call* call);
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// At least 1.
    unsigned threads() const { return m_threads; }

    /// Calls the host's callback, and throws AbortException if that returns nonzero or throws.
    /// Empty if the host has none. Must not outlive the call.
    std::function<void(int)> progress();

    /// To be asked before an AbortException ends the call: throws CallError if it came about
    /// because an exception left the host's callback.
    template <class Body>
    void run(const Body& body) {
        try {
            body();
        } catch (...) {
            refuseFailedCallback();
            throw;
        }
    }

 private:
    void refuseFailedCallback() const;

    tesk_progress m_callback = nullptr;
    void* m_user = nullptr;
    unsigned m_threads;
    int m_formerThreads;
    std::atomic<bool> m_hasThrown = false;
};

}  // namespace Tesk::c

#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <functional>

namespace Tesk::pose {

/// Runs pieces of work on the threads of a parallel region. Thread t of n takes pieces t, t + n,
/// t + 2n and so on, so that what the calling thread reports does not depend on timing.
///
/// Only the calling thread reports. If its callback throws Tesk::AbortException, no thread starts
/// another piece, and Tesk::AbortException("Aborting...") is thrown at the end. Any other exception
/// ends the work in the same way and is rethrown unchanged.
class PoseWork {
 public:
    /// Reports percentages from `first` to `last`; keeps a reference to the callback.
    PoseWork(const std::function<void(int)>& progress, int first, int last)
        : m_progress(progress), m_first(first), m_last(last) {}

    /// Calls piece(i) for all i in [0, count).
    void run(std::size_t count, const std::function<void(std::size_t)>& piece);

 private:
    void runShare(std::size_t thread, std::size_t threads, std::size_t count,
                  const std::function<void(std::size_t)>& piece);
    void report(std::size_t done, std::size_t count);

    const std::function<void(int)>& m_progress;
    int m_first;
    int m_last;
    std::atomic<bool> m_isAborted = false;
    std::exception_ptr m_failure;
};

}  // namespace Tesk::pose

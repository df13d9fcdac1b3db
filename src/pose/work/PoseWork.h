#pragma once

#include <atomic>
#include <cstddef>
#include <functional>

#include "TeskThreads/Team.h"

namespace Tesk::pose {

/// A stage of a search: pieces of work, shared by the threads of a Team, that report progress.
///
/// Only the calling thread reports, once for each piece of its share, even if another thread does
/// that piece: the reports depend on the number of threads, not on timing. If the callback throws
/// Tesk::AbortException, no thread starts another piece, and Tesk::AbortException("Aborting...") is
/// thrown at the end. Any other exception ends the work in the same way and is rethrown unchanged.
class PoseWork {
 public:
    /// Reports percentages from `first` to `last`; keeps a reference to the callback.
    PoseWork(const std::function<void(int)>& progress, int first, int last)
        : m_progress(progress), m_first(first), m_last(last) {}

    /// Calls piece(i) for all i in [0, count), on any thread.
    void run(std::size_t count, const std::function<void(std::size_t)>& piece);

 private:
    void runOn(Tesk::Team& team, std::size_t count, const std::function<void(std::size_t)>& piece);
    void report(std::size_t reports);

    const std::function<void(int)>& m_progress;
    int m_first;
    int m_last;
    std::size_t m_reports = 0;
    std::atomic<bool> m_isAborted = false;
};

}  // namespace Tesk::pose

#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

namespace Tesk::minbox {

/// The progress of one search: counts steps and reports each whole percentage once.
class ProgressRecord {
 public:
    /// @param first     added to every percentage
    /// @param total     the number of steps that make 100 %; 0 only if none is taken
    /// @param callback  may be empty
    ProgressRecord(std::int32_t first, std::int32_t total, std::function<void(int)> callback);

    /// Counts a step, and reports the percentage if it has grown. May be called on any thread; the
    /// callback runs on that thread, never twice at once. Passes on what the callback throws.
    ///
    /// @return false, without a step, once the callback has thrown: it is never called again, not
    ///         even for a thread that was waiting while it threw.
    bool step();

    bool isOwnedByThisThread() const { return std::this_thread::get_id() == m_ownerThread; }

 private:
    std::int32_t m_first;
    std::int32_t m_total;
    std::atomic<std::int32_t> m_lastReported = 0;
    std::atomic<std::int32_t> m_counter = 0;
    std::function<void(int)> m_callback;
    std::thread::id m_ownerThread;
    bool m_hasThrown = false;
    std::mutex m_mutex;
};

}  // namespace Tesk::minbox

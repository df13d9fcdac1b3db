#pragma once

#ifdef _OPENMP
#include <omp.h>
#endif

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <utility>

#include "TeskCommon/Sse2.h"

namespace Tesk {

/// A number that threads change and wait for. A waiting thread polls it for a while and then
/// sleeps. (std::atomic::wait() is not used: with GCC's library on Windows, which has no futex, it
/// loses wake-ups.)
class WatchedNumber {
 public:
    std::uint32_t get() const { return m_value; }

    /// Changes the number without waking sleepers.
    void add(std::uint32_t step) { m_value += step; }

    void wake() {
        if (m_sleepers == 0) return;
        // A waiting thread reads the number under the lock, which it gives up only by sleeping. So
        // by now it either sleeps, and is notified, or has yet to read the new number.
        { const std::lock_guard lock(m_mutex); }
        m_changed.notify_all();
    }

    /// Waits until the number differs from `old`; returns it.
    std::uint32_t waitPast(std::uint32_t old) {
        // About as long as a sleep and a wake-up take.
        constexpr int kPolls = 1000;
        for (int i = 0; i < kPolls && m_value == old; ++i) relax();
        if (m_value == old) sleepPast(old);
        return m_value;
    }

    void waitUntil(std::uint32_t wanted) {
        for (std::uint32_t found = m_value; found != wanted;) found = waitPast(found);
    }

 private:
    void sleepPast(std::uint32_t old) {
        std::unique_lock lock(m_mutex);
        ++m_sleepers;
        m_changed.wait(lock, [&] { return m_value != old; });
        --m_sleepers;
    }

    static void relax() {
#ifdef TESK_HAS_SSE2
        _mm_pause();
#else
        std::this_thread::yield();
#endif
    }

    std::atomic<std::uint32_t> m_value = 0;
    std::atomic<std::uint32_t> m_sleepers = 0;
    std::mutex m_mutex;
    std::condition_variable m_changed;
};

/// The threads of one OpenMP parallel region. The calling thread, the master, runs the serial parts
/// and hands out parallel work; between such work the other threads sleep.
///
/// OpenMP's own barriers are not used for this: at a barrier, threads of GCC's library spin for
/// milliseconds, and on a busy machine they take the processor from the very thread they wait for.
/// For the same reason, run() does not wait for a thread that has not begun by the time the others
/// have finished all the work.
class Team {
 public:
    /// A team of the calling thread alone.
    Team() = default;
    Team(const Team&) = delete;
    Team& operator=(const Team&) = delete;

    /// The number of threads, the master included.
    int size() const { return m_size; }

    /// Calls work(thread) once on the master, which is thread 0, and at most once on each other
    /// thread; a thread that is too late is left out. Returns when all calls have returned, and
    /// rethrows the first exception that one of them threw. Only the master may call this.
    template <class Work>
    void run(Work&& work) {
        m_context = std::addressof(work);
        m_call = [](const void* context, int thread) {
            auto* object = const_cast<void*>(context);
            (*static_cast<std::remove_reference_t<Work>*>(object))(thread);
        };
        if (m_size > 1) open();
        callWork(0);
        if (m_size > 1) close();
        m_hasFailed = false;
        if (m_failure) std::rethrow_exception(std::exchange(m_failure, nullptr));
    }

    /// Calls work(first, end, thread) for ranges that cover 0 to `count`, each of at most `piece`
    /// numbers (above 0). Each thread gets its ranges in ascending order. Otherwise as run().
    template <class Work>
    void forPieces(std::int64_t count, std::int64_t piece, Work&& work) {
        std::atomic<std::int64_t> next = 0;
        const auto takePieces = [&](int thread) {
            for (;;) {
                const std::int64_t first = next.fetch_add(piece, std::memory_order_relaxed);
                if (first >= count || m_hasFailed) return;
                work(first, std::min(first + piece, count), thread);
            }
        };
        if (m_size > 1 && count > piece) {
            run(takePieces);
        } else {
            for (std::int64_t first = 0; first < count; first += piece) {
                work(first, std::min(first + piece, count), 0);
            }
        }
    }

 private:
    template <class Work>
    friend void withTeam(int threads, Work&& work);

    /// The state is odd while other threads may begin the current work.
    static bool isOpen(std::uint32_t state) { return (state & 1) != 0; }

    void callWork(int thread) {
        try {
            m_call(m_context, thread);
        } catch (...) {
            if (!m_hasFailed.exchange(true)) m_failure = std::current_exception();
        }
    }

    void open() {
        m_state.add(1);
        m_state.wake();
    }

    /// Lets no other thread begin, and waits for those that have begun.
    void close() {
        m_state.add(1);
        m_inside.waitUntil(0);
    }

    /// The loop of every thread but the master.
    void serve(int thread) {
        std::uint32_t seen = 0;
        for (;;) {
            seen = m_state.waitPast(seen);
            if (m_isOver) break;
            if (!isOpen(seen)) continue;
            // From here on the master waits for this thread, unless it closed the work before: then
            // the state has changed.
            m_inside.add(1);
            seen = m_state.get();
            if (!m_isOver && isOpen(seen)) callWork(thread);
            m_inside.add(~std::uint32_t{0});
            if (m_inside.get() == 0) m_inside.wake();
            if (m_isOver) break;
        }
        m_leaving.add(1);
        m_leaving.wake();
    }

    /// Sleeps until the region is over: what a thread of the region does that is not of the team.
    void sitOut() {
        m_end.waitUntil(1);
        m_leaving.add(1);
        m_leaving.wake();
    }

    /// Sends the other threads to the end of the region, and waits until they are leaving.
    void dismiss(int regionSize) {
        m_isOver = true;
        m_state.add(2);
        m_state.wake();
        m_end.add(1);
        m_end.wake();
        m_leaving.waitUntil(static_cast<std::uint32_t>(regionSize) - 1);
    }

    int m_size = 1;
    const void* m_context = nullptr;
    void (*m_call)(const void*, int) = nullptr;
    std::atomic<bool> m_hasFailed = false;
    std::exception_ptr m_failure;
    std::atomic<bool> m_isOver = false;
    WatchedNumber m_state;
    WatchedNumber m_inside;   ///< threads that may be at work, without the master
    WatchedNumber m_end;      ///< 1 when the region is over
    WatchedNumber m_leaving;  ///< threads that are about to end the region
};

/// The number of threads that the caller's OpenMP setting allows; 1 without OpenMP.
inline int mostThreads() {
#ifdef _OPENMP
    return std::max(omp_get_max_threads(), 1);
#else
    return 1;
#endif
}

/// The number of threads to use for some work if a thread pays off for each `share` of it:
/// work / share, from 1 to mostThreads().
inline int threadsFor(std::int64_t work, std::int64_t share) {
    return static_cast<int>(std::clamp<std::int64_t>(work / share, 1, mostThreads()));
}

/// Calls work(team) on the calling thread, which is the master of a parallel region of at most
/// `threads` threads. Passes on what work() throws.
///
/// The region itself always has as many threads as the caller's setting allows; those beyond
/// `threads` sleep. GCC's library ends threads that the next region has no use for, and on Windows
/// a process that exits while one of them is ending may hang in that library.
template <class Work>
void withTeam(int threads, Work&& work) {
    Team team;
#ifdef _OPENMP
    if (threads > 1) {
        std::exception_ptr failure;
#pragma omp parallel num_threads(std::max(threads, mostThreads()))
        {
            const int thread = omp_get_thread_num();
            if (thread >= threads) {
                team.sitOut();
            } else if (thread != 0) {
                team.serve(thread);
            } else {
                const int regionSize = omp_get_num_threads();
                team.m_size = std::min(threads, regionSize);
                try {
                    work(team);
                } catch (...) {
                    failure = std::current_exception();
                }
                team.dismiss(regionSize);
            }
        }
        if (failure) std::rethrow_exception(failure);
        return;
    }
#endif
    static_cast<void>(threads);
    work(team);
}

}  // namespace Tesk

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

/// A number that threads change and wait for: they look at it for a while and then sleep. (The wait
/// of std::atomic loses wake-ups where GCC's library has no futex, on Windows.)
class WatchedNumber {
 public:
    std::uint32_t get() const { return m_value; }

    /// Changes the number without a word to those who wait.
    void add(std::uint32_t step) { m_value += step; }

    void wake() {
        if (m_sleepers == 0) return;
        // Who sleeps, or is about to, has looked at the number before or will look after this.
        { const std::lock_guard lock(m_mutex); }
        m_changed.notify_all();
    }

    /// Waits until the number is another; returns it.
    std::uint32_t waitPast(std::uint32_t old) {
        // About as long as a sleep and a wake-up take.
        constexpr int kLooks = 1000;
        for (int i = 0; i < kLooks && m_value == old; ++i) relax();
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

/// The threads of one OpenMP parallel region. The calling thread, its master, runs the work that
/// goes on in order, and hands out what can be done on all; meanwhile the others sleep.
///
/// The waiting of OpenMP's own barriers is not used: GCC's library spins there for milliseconds,
/// which on a busy machine takes the processors from the threads that are waited for. For the same
/// reason a thread that comes to a piece of work late, because something else has its processor, is
/// not waited for where the others have finished without it.
class Team {
 public:
    /// The calling thread alone.
    Team() = default;
    Team(const Team&) = delete;
    Team& operator=(const Team&) = delete;

    /// How many threads there are, with the master.
    int size() const { return m_size; }

    /// Calls work(thread) once on the master, as thread 0, and at most once on each other thread
    /// that has the time for it; returns when all calls have. What one of them throws, the first,
    /// leaves here. The master alone may call this.
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

    /// Calls work(first, end, thread) for ranges of at most `piece`, above 0, that cover 0 to
    /// `count`. Each thread gets ascending ranges. Otherwise as run().
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

    /// The state is odd while the master lets others begin.
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

    /// Lets no other thread begin, and waits for those that have.
    void close() {
        m_state.add(1);
        m_inside.waitUntil(0);
    }

    /// What the other threads do all the time.
    void serve(int thread) {
        std::uint32_t seen = 0;
        for (;;) {
            seen = m_state.waitPast(seen);
            if (m_isOver) break;
            if (!isOpen(seen)) continue;
            // From here the master waits; unless it has gone on since, then the state tells so.
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

    /// Sends the other threads to the end of the region, and waits until they are about there.
    void dismiss() {
        m_isOver = true;
        m_state.add(2);
        m_state.wake();
        m_leaving.waitUntil(static_cast<std::uint32_t>(m_size) - 1);
    }

    int m_size = 1;
    const void* m_context = nullptr;
    void (*m_call)(const void*, int) = nullptr;
    std::atomic<bool> m_hasFailed = false;
    std::exception_ptr m_failure;
    std::atomic<bool> m_isOver = false;
    WatchedNumber m_state;
    WatchedNumber m_inside;   ///< threads that may be at work, but the master
    WatchedNumber m_leaving;  ///< those that are about to end the region
};

/// How many threads the caller's setting allows; 1 without OpenMP.
inline int mostThreads() {
#ifdef _OPENMP
    return std::max(omp_get_max_threads(), 1);
#else
    return 1;
#endif
}

/// How many of them are worth having for so much work, where one is for each `share` of it.
inline int threadsFor(std::int64_t work, std::int64_t share) {
    return static_cast<int>(std::clamp<std::int64_t>(work / share, 1, mostThreads()));
}

/// Calls work(team) on the calling thread, as the master of a parallel region of at most that many
/// threads. What it throws leaves here.
template <class Work>
void withTeam(int threads, Work&& work) {
    Team team;
#ifdef _OPENMP
    if (threads > 1) {
        std::exception_ptr failure;
#pragma omp parallel num_threads(threads)
        {
            const int thread = omp_get_thread_num();
            if (thread != 0) {
                team.serve(thread);
            } else {
                team.m_size = omp_get_num_threads();
                try {
                    work(team);
                } catch (...) {
                    failure = std::current_exception();
                }
                team.dismiss();
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

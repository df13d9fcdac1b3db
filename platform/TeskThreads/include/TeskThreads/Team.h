#pragma once

#ifdef _OPENMP
#include <omp.h>
#endif
#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#else
#include <thread>
#endif

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <type_traits>
#include <utility>

namespace Tesk {

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

    /// What m_state says beside the number of a piece of work, twice, plus one while it is open.
    static constexpr std::uint32_t kDismissed = ~std::uint32_t{0};

    static bool isOpen(std::uint32_t state) { return (state & 1) != 0; }

    void callWork(int thread) {
        try {
            m_call(m_context, thread);
        } catch (...) {
            if (!m_hasFailed.exchange(true)) m_failure = std::current_exception();
        }
    }

    void open() {
        ++m_state;
        m_state.notify_all();
    }

    /// Lets no other thread begin, and waits for those that have.
    void close() {
        ++m_state;
        waitUntil(m_inside, 0);
    }

    /// What the other threads do all the time.
    void serve(int thread) {
        std::uint32_t seen = 0;
        for (;;) {
            std::uint32_t state = waitPast(m_state, seen);
            seen = state;
            if (state == kDismissed) break;
            if (!isOpen(state)) continue;
            // From here the master waits; unless it has gone on since, then the state tells so.
            ++m_inside;
            state = m_state;
            if (state != kDismissed && isOpen(state)) {
                seen = state;
                callWork(thread);
            }
            if (--m_inside == 0) m_inside.notify_all();
        }
        ++m_leaving;
        m_leaving.notify_all();
    }

    /// Sends the other threads to the end of the region, and waits until they are about there.
    void dismiss() {
        m_state = kDismissed;
        m_state.notify_all();
        waitUntil(m_leaving, static_cast<std::uint32_t>(m_size) - 1);
    }

    static void relax() {
#if defined(__SSE2__) || defined(_M_X64)
        _mm_pause();
#else
        std::this_thread::yield();
#endif
    }

    /// Looks for a value other than `old` for as long as a sleep and a wake-up would take.
    static std::uint32_t spinPast(const std::atomic<std::uint32_t>& value, std::uint32_t old) {
        constexpr int kSpins = 1000;
        for (int i = 0; i < kSpins && value == old; ++i) relax();
        return value;
    }

    static std::uint32_t waitPast(const std::atomic<std::uint32_t>& value, std::uint32_t old) {
        if (spinPast(value, old) == old) value.wait(old);
        return value;
    }

    static void waitUntil(const std::atomic<std::uint32_t>& value, std::uint32_t wanted) {
        for (std::uint32_t found = value; found != wanted;) found = waitPast(value, found);
    }

    int m_size = 1;
    const void* m_context = nullptr;
    void (*m_call)(const void*, int) = nullptr;
    std::atomic<bool> m_hasFailed = false;
    std::exception_ptr m_failure;
    std::atomic<std::uint32_t> m_state = 0;
    std::atomic<std::uint32_t> m_inside = 0;   ///< threads that may be at work, but the master
    std::atomic<std::uint32_t> m_leaving = 0;  ///< those that are about to end the region
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

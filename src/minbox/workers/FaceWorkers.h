#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

#include "TeskCommon/Assert.h"

namespace Tesk::minbox {

/// A contiguous range of hull faces, `last` not included.
struct FaceRange {
    int first;
    int last;
};

/// Splits the faces among threads: into one range of equal size per thread, the last with the
/// remainder, or into a single range for the calling thread if there are fewer than two threads or
/// fewer faces than threads.
inline std::vector<FaceRange> splitFaces(int faceCount, std::uint32_t threadCount) {
    TESK_ASSERT(faceCount >= 0);
    if (threadCount < 2 || static_cast<std::uint32_t>(faceCount) < threadCount) {
        return {{0, faceCount}};
    }
    const int threads = static_cast<int>(threadCount);
    const int share = faceCount / threads;
    std::vector<FaceRange> ranges;
    for (int t = 0; t < threads; ++t) ranges.push_back({t * share, (t + 1) * share});
    ranges.back().last = faceCount;
    return ranges;
}

/// Runs work(t) for t = 0 .. count − 1, each on a thread of its own, joins the threads in this
/// order and calls joined(t) after each.
///
/// If a thread cannot be started, calls giveUp(), joins those that run, and rethrows. If a
/// std::bad_alloc or std::system_error leaves work(), calls giveUp() on that thread and rethrows
/// the exception after all threads have been joined; of several, that of the lowest t. Any other
/// exception that leaves work() ends the process. An abort must therefore not leave it: see
/// WorkerAbort.h.
///
/// @tparam Thread  std::thread, or a test's substitute
template <class Thread = std::thread, class Work, class Joined, class GiveUp>
void runWorkers(std::size_t count, Work work, Joined joined, GiveUp giveUp) {
    std::vector<std::exception_ptr> failures(count);
    const auto run = [&](std::size_t t) noexcept {
        try {
            work(t);
        } catch (const std::bad_alloc&) {
            failures[t] = std::current_exception();
            giveUp();
        } catch (const std::system_error&) {
            failures[t] = std::current_exception();
            giveUp();
        }
    };
    std::vector<Thread> threads;
    threads.reserve(count);
    try {
        for (std::size_t t = 0; t < count; ++t) threads.emplace_back([&run, t] { run(t); });
    } catch (...) {
        giveUp();
        for (Thread& thread : threads) thread.join();
        throw;
    }
    for (std::size_t t = 0; t < count; ++t) {
        threads[t].join();
        joined(t);
    }
    for (const std::exception_ptr& failure : failures) {
        if (failure) std::rethrow_exception(failure);
    }
}

}  // namespace Tesk::minbox

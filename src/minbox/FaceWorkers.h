#pragma once

#include <cstdint>
#include <exception>
#include <new>
#include <system_error>
#include <thread>
#include <vector>

/// A contiguous range of hull faces, `last` not included.
struct FaceRange {
    int first;
    int last;
};

/// One range for the calling thread where there are fewer than two threads or fewer faces than
/// threads; else one per thread, of equal size, the last one with the remainder.
inline std::vector<FaceRange> splitFaces(int faceCount, std::uint32_t threadCount) {
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

/// Runs work(t) for t = 0 .. count − 1, each on a thread of its own; joins them in this order and
/// calls joined(t) after each.
///
/// Where a thread cannot be started, calls giveUp(), joins those that run, and rethrows. A
/// std::bad_alloc or std::system_error that leaves work() leads to giveUp(), on that thread, and is
/// rethrown when all are joined, that of the lowest t. Any other exception that leaves work() ends
/// the process.
///
/// @tparam Thread  std::thread, or what stands for it in a test
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

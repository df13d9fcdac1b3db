#pragma once

#include <cstdint>
#include <exception>
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
/// calls joined(t) after each. Where a thread cannot be started, calls giveUp(), joins those that
/// run, and rethrows. An exception that leaves work() ends the process.
///
/// @tparam Thread  std::thread, or what stands for it in a test
template <class Thread = std::thread, class Work, class Joined, class GiveUp>
void runWorkers(std::size_t count, Work work, Joined joined, GiveUp giveUp) {
    std::vector<Thread> threads;
    threads.reserve(count);
    try {
        for (std::size_t t = 0; t < count; ++t) threads.emplace_back([&work, t] { work(t); });
    } catch (...) {
        giveUp();
        for (Thread& thread : threads) thread.join();
        throw;
    }
    for (std::size_t t = 0; t < count; ++t) {
        threads[t].join();
        joined(t);
    }
}

#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <system_error>
#include <thread>
#include <vector>

namespace Tesk::files {

/// How many threads are worth it for so many items; 0 wanted stands for the machine's processors.
inline unsigned workersFor(std::size_t items, std::size_t itemsEach, unsigned wanted) {
    if (wanted == 0) wanted = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t useful = items / itemsEach + 1;
    return static_cast<unsigned>(std::min<std::size_t>(wanted, useful));
}

/// Calls work(first, last, worker) for equal shares of 0..count, each on a thread of its own, the
/// share 0 on the calling one. Throws what the lowest share threw, after all have ended.
template <class Work>
void inShares(std::size_t count, unsigned workers, Work work) {
    std::vector<std::exception_ptr> failures(workers);
    const auto share = [&](unsigned worker) noexcept {
        try {
            work(count * worker / workers, count * (worker + 1) / workers, worker);
        } catch (...) {
            failures[worker] = std::current_exception();
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(workers);
    unsigned started = 1;
    try {
        for (; started < workers; ++started) threads.emplace_back(share, started);
    } catch (const std::system_error&) {
        // No more threads to be had: this one does the rest.
    }
    share(0);
    for (; started < workers; ++started) share(started);
    for (std::thread& thread : threads) thread.join();
    for (const std::exception_ptr& failure : failures) {
        if (failure) std::rethrow_exception(failure);
    }
}

}  // namespace Tesk::files

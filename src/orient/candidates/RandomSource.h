#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Tesk::orient {

/// The next pseudo-random number of the calling thread, 0..32767.
///
/// With Microsoft's C library this is rand(), whose state belongs to the host. Elsewhere it is the
/// same sequence (a linear congruential generator), with one state per thread that starts as if
/// seeded with 1. OptimizeOrient::seedRandom() sets it.
int nextRandom();

/// A run of random numbers. The constructor draws them; afterwards any thread may read them, in any
/// order.
class RandomRun {
 public:
    /// The calling thread's next numbers.
    explicit RandomRun(std::size_t count);

    /// The numbers of nextRandom() after a seed. Neither depends on the calling thread's state nor
    /// advances it.
    static RandomRun fromSeed(std::uint32_t seed);

    /// Copies numbers of the run, from index `first` on, until `numbers` is full. The run must be
    /// long enough.
    void read(std::size_t first, std::span<std::uint16_t> numbers) const;

 private:
    RandomRun() = default;

    std::uint32_t m_start = 0;             ///< our generator's state before the run
    std::vector<std::uint16_t> m_numbers;  ///< the run itself, if the C library's generator drew it
};

}  // namespace Tesk::orient

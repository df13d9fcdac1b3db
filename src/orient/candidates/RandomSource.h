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

/// The next so many numbers of the calling thread, drawn when this is made, to be read in any order
/// on any thread.
class RandomRun {
 public:
    explicit RandomRun(std::size_t count);

    /// The numbers from the given place of the run on.
    void read(std::size_t first, std::span<std::uint16_t> numbers) const;

 private:
    std::uint32_t m_start = 0;             ///< the generator's state before the run, or
    std::vector<std::uint16_t> m_numbers;  ///< the run itself, where the state is out of reach
};

}  // namespace Tesk::orient

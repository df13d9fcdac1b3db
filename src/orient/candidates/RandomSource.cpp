#include "orient/candidates/RandomSource.h"

#include <algorithm>
#include <cstdlib>

#include "OrientOptimizer.h"
#include "TeskCommon/Assert.h"

namespace Tesk::orient {
namespace {

constexpr std::uint32_t kFactor = 214013;
constexpr std::uint32_t kSummand = 2531011;

/// Advances a generator's state and returns its next number.
std::uint32_t drawFrom(std::uint32_t& state) {
    state = state * kFactor + kSummand;
    return (state >> 16) & 0x7fffu;
}

/// The state after drawing that many numbers, in logarithmic time. Two steps of the generator equal
/// one step with another factor and summand; so do four, eight and so on.
std::uint32_t stateAfter(std::uint32_t state, std::size_t numbers) {
    std::uint32_t factor = kFactor;
    std::uint32_t summand = kSummand;
    for (; numbers != 0; numbers >>= 1) {
        if ((numbers & 1) != 0) state = state * factor + summand;
        summand *= factor + 1;
        factor *= factor;
    }
    return state;
}

#if defined(_WIN32)

// Microsoft's generator already has 15 bits and one state per thread.
static_assert(RAND_MAX == 32767);

#else

thread_local std::uint32_t randomState = 1;

#endif

}  // namespace

#if defined(_WIN32)

int nextRandom() {
    return std::rand();
}

RandomRun::RandomRun(std::size_t count) : m_numbers(count) {
    for (std::uint16_t& number : m_numbers) number = static_cast<std::uint16_t>(nextRandom());
}

#else

int nextRandom() {
    return static_cast<int>(drawFrom(randomState));
}

RandomRun::RandomRun(std::size_t count) : m_start(randomState) {
    randomState = stateAfter(randomState, count);
}

#endif

RandomRun RandomRun::fromSeed(std::uint32_t seed) {
    RandomRun run;
    run.m_start = seed;
    return run;
}

void RandomRun::read(std::size_t first, std::span<std::uint16_t> numbers) const {
    if (m_numbers.empty()) {
        std::uint32_t state = stateAfter(m_start, first);
        for (std::uint16_t& number : numbers) number = static_cast<std::uint16_t>(drawFrom(state));
        return;
    }
    TESK_ASSERT(first <= m_numbers.size() && numbers.size() <= m_numbers.size() - first);
    std::copy_n(m_numbers.begin() + static_cast<std::ptrdiff_t>(first), numbers.size(),
                numbers.begin());
}

}  // namespace Tesk::orient

void OptimizeOrient::seedRandom(std::uint32_t seed) {
#if defined(_WIN32)
    std::srand(seed);
#else
    Tesk::orient::randomState = seed;
#endif
}

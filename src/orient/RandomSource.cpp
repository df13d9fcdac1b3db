#include "RandomSource.h"

#include <cstdint>
#include <cstdlib>

#include "OrientOptimizer.h"

#if defined(_WIN32)

// Microsoft's generator already has 15 bits and one state per thread.
static_assert(RAND_MAX == 32767);

int nextRandom() {
    return std::rand();
}

void OptimizeOrient::seedRandom(std::uint32_t seed) {
    std::srand(seed);
}

#else

namespace {

thread_local std::uint32_t randomState = 1;

}  // namespace

int nextRandom() {
    randomState = randomState * 214013u + 2531011u;
    return static_cast<int>((randomState >> 16) & 0x7fffu);
}

void OptimizeOrient::seedRandom(std::uint32_t seed) {
    randomState = seed;
}

#endif

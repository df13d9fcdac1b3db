#pragma once

/// The next pseudo-random number of the calling thread, 0..32767.
///
/// With Microsoft's C library this is rand(), whose state belongs to the host. Elsewhere it is the
/// same sequence (a linear congruential generator), with one state per thread that starts as if
/// seeded with 1. OptimizeOrient::seedRandom() sets it.
int nextRandom();

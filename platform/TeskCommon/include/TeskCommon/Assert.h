#pragma once

#include <cassert>

/// States what the code relies on. Builds without NDEBUG stop where it does not hold; the others
/// compile the condition but never evaluate it.
#ifdef NDEBUG
#define TESK_ASSERT(...) static_cast<void>(sizeof((__VA_ARGS__) ? 1 : 0))
#else
#define TESK_ASSERT(...) assert((__VA_ARGS__))
#endif

#pragma once

#include <cstdlib>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define TESK_TEST_SLOW_BUILD 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || !defined(NDEBUG)
#define TESK_TEST_SLOW_BUILD 1
#endif

/// Whether the long comparisons take samples instead of everything: under sanitizers, in builds
/// with assertions, and where the environment variable TESK_TEST_SMALL is set.
inline bool testsAreSmall() {
#if defined(TESK_TEST_SLOW_BUILD)
    return true;
#else
    return std::getenv("TESK_TEST_SMALL") != nullptr;
#endif
}

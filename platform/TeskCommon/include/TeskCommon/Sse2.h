#pragma once

/// Defines TESK_HAS_SSE2 and declares the intrinsics where every processor that the code is built
/// for has SSE2.
#if defined(__SSE2__) || defined(_M_X64)
#define TESK_HAS_SSE2 1
#include <emmintrin.h>
#endif

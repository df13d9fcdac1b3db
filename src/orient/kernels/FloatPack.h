#pragma once

#include <cstddef>
#include <cstdint>

#include "TeskCommon/Sse2.h"

#ifdef TESK_HAS_SSE2
#include <immintrin.h>
#endif

namespace Tesk::orient {

/// Vectors of floats with the few operations that the kernels need. Each lane rounds as a single
/// float does. A source file sees only the widths that it is compiled for.
namespace {

/// One float: for the ends of arrays, and for processors without SSE2.
struct FloatPack1 {
    using Ints = std::uint32_t;
    static constexpr std::size_t kLanes = 1;

    float v;

    static FloatPack1 load(const float* p) { return {*p}; }
    static FloatPack1 all(float value) { return {value}; }
    void store(float* p) const { *p = v; }

    FloatPack1 operator+(FloatPack1 o) const { return {v + o.v}; }
    FloatPack1 operator-(FloatPack1 o) const { return {v - o.v}; }
    FloatPack1 operator*(FloatPack1 o) const { return {v * o.v}; }

    /// The lesser, or greater, of the two; the other if they are equal or either is NaN.
    FloatPack1 orLess(FloatPack1 o) const { return {v < o.v ? v : o.v}; }
    FloatPack1 orGreater(FloatPack1 o) const { return {v > o.v ? v : o.v}; }

    /// Rounded towards zero. The value must not be negative and must fit a signed integer.
    Ints truncated() const { return static_cast<std::uint32_t>(static_cast<std::int32_t>(v)); }
    static Ints sum(Ints a, Ints b) { return a + b; }
    static Ints highAndLow(Ints high, Ints low) { return (high << 16) | low; }
    static void storeInts(Ints value, std::uint32_t* p) { *p = value; }

    /// One bit per lane, the lowest for the first.
    unsigned isZero() const { return v == 0.0f ? 1 : 0; }
    unsigned isNegative() const { return v < 0.0f ? 1 : 0; }
    unsigned isPositive() const { return v > 0.0f ? 1 : 0; }
};

#ifdef TESK_HAS_SSE2
struct FloatPack4 {
    using Ints = __m128i;
    static constexpr std::size_t kLanes = 4;

    __m128 v;

    static FloatPack4 load(const float* p) { return {_mm_loadu_ps(p)}; }
    static FloatPack4 all(float value) { return {_mm_set1_ps(value)}; }
    void store(float* p) const { _mm_storeu_ps(p, v); }

    FloatPack4 operator+(FloatPack4 o) const { return {_mm_add_ps(v, o.v)}; }
    FloatPack4 operator-(FloatPack4 o) const { return {_mm_sub_ps(v, o.v)}; }
    FloatPack4 operator*(FloatPack4 o) const { return {_mm_mul_ps(v, o.v)}; }

    FloatPack4 orLess(FloatPack4 o) const { return {_mm_min_ps(v, o.v)}; }
    FloatPack4 orGreater(FloatPack4 o) const { return {_mm_max_ps(v, o.v)}; }

    Ints truncated() const { return _mm_cvttps_epi32(v); }
    static Ints sum(Ints a, Ints b) { return _mm_add_epi32(a, b); }
    static Ints highAndLow(Ints high, Ints low) {
        return _mm_or_si128(_mm_slli_epi32(high, 16), low);
    }
    static void storeInts(Ints value, std::uint32_t* p) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(p), value);
    }

    unsigned isZero() const { return lanesOf(_mm_cmpeq_ps(v, _mm_setzero_ps())); }
    unsigned isNegative() const { return lanesOf(_mm_cmplt_ps(v, _mm_setzero_ps())); }
    unsigned isPositive() const { return lanesOf(_mm_cmpgt_ps(v, _mm_setzero_ps())); }

 private:
    static unsigned lanesOf(__m128 mask) { return static_cast<unsigned>(_mm_movemask_ps(mask)); }
};
#endif

#ifdef __AVX2__
struct FloatPack8 {
    using Ints = __m256i;
    static constexpr std::size_t kLanes = 8;

    __m256 v;

    static FloatPack8 load(const float* p) { return {_mm256_loadu_ps(p)}; }
    static FloatPack8 all(float value) { return {_mm256_set1_ps(value)}; }
    void store(float* p) const { _mm256_storeu_ps(p, v); }

    FloatPack8 operator+(FloatPack8 o) const { return {_mm256_add_ps(v, o.v)}; }
    FloatPack8 operator-(FloatPack8 o) const { return {_mm256_sub_ps(v, o.v)}; }
    FloatPack8 operator*(FloatPack8 o) const { return {_mm256_mul_ps(v, o.v)}; }

    FloatPack8 orLess(FloatPack8 o) const { return {_mm256_min_ps(v, o.v)}; }
    FloatPack8 orGreater(FloatPack8 o) const { return {_mm256_max_ps(v, o.v)}; }

    Ints truncated() const { return _mm256_cvttps_epi32(v); }
    static Ints sum(Ints a, Ints b) { return _mm256_add_epi32(a, b); }
    static Ints highAndLow(Ints high, Ints low) {
        return _mm256_or_si256(_mm256_slli_epi32(high, 16), low);
    }
    static void storeInts(Ints value, std::uint32_t* p) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), value);
    }

    unsigned isZero() const { return compared<_CMP_EQ_OQ>(); }
    unsigned isNegative() const { return compared<_CMP_LT_OQ>(); }
    unsigned isPositive() const { return compared<_CMP_GT_OQ>(); }

 private:
    template <int kPredicate>
    unsigned compared() const {
        const __m256 mask = _mm256_cmp_ps(v, _mm256_setzero_ps(), kPredicate);
        return static_cast<unsigned>(_mm256_movemask_ps(mask));
    }
};
#endif

}  // namespace

}  // namespace Tesk::orient

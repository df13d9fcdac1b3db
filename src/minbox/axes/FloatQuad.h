#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"

#if defined(__SSE2__) || defined(_M_X64)
#define TESK_HAS_SSE2 1
#include <emmintrin.h>
#endif

/// The three coordinates of a point, and a fourth number without meaning, that go through the same
/// operations side by side; each rounds as a float alone does.
class FloatQuad {
 public:
    explicit FloatQuad(float all) : FloatQuad(all, all, all) {}
    explicit FloatQuad(const UVector3<float>& v) : FloatQuad(v.x, v.y, v.z) {}

    /// Reads four floats from a point's on: not for the last point of an array.
    static FloatQuad read(const UPoint3<float>& p);
    /// The same for any point.
    static FloatQuad of(const UPoint3<float>& p) { return FloatQuad(p.x, p.y, p.z); }

    UVector3<float> vector() const;

    FloatQuad operator+(const FloatQuad& o) const;
    FloatQuad operator-(const FloatQuad& o) const;
    FloatQuad operator*(const FloatQuad& o) const;

    /// One of its numbers in all places.
    template <int kPlace>
    FloatQuad spread() const;

    /// This where it is less, or greater, than the other; else the other.
    FloatQuad orLess(const FloatQuad& o) const;
    FloatQuad orGreater(const FloatQuad& o) const;

    /// The number of greater magnitude; infinity is greater than all numbers, and what is undefined
    /// than infinity. Without signs.
    FloatQuad orFarther(const FloatQuad& withoutSign) const;

 private:
#ifdef TESK_HAS_SSE2
    FloatQuad(float x, float y, float z) : m_v(_mm_setr_ps(x, y, z, 0.0f)) {}
    explicit FloatQuad(__m128 v) : m_v(v) {}

    __m128 m_v;
#else
    FloatQuad(float x, float y, float z) : m_v{x, y, z} {}

    template <class Operation>
    FloatQuad with(const FloatQuad& o, Operation operation) const {
        return {operation(m_v[0], o.m_v[0]), operation(m_v[1], o.m_v[1]),
                operation(m_v[2], o.m_v[2])};
    }

    std::array<float, 3> m_v;
#endif
};

#ifdef TESK_HAS_SSE2

inline FloatQuad FloatQuad::read(const UPoint3<float>& p) {
    return FloatQuad(_mm_loadu_ps(&p.x));
}

inline UVector3<float> FloatQuad::vector() const {
    std::array<float, 4> v;
    _mm_storeu_ps(v.data(), m_v);
    return {v[0], v[1], v[2]};
}

inline FloatQuad FloatQuad::operator+(const FloatQuad& o) const {
    return FloatQuad(_mm_add_ps(m_v, o.m_v));
}

inline FloatQuad FloatQuad::operator-(const FloatQuad& o) const {
    return FloatQuad(_mm_sub_ps(m_v, o.m_v));
}

inline FloatQuad FloatQuad::operator*(const FloatQuad& o) const {
    return FloatQuad(_mm_mul_ps(m_v, o.m_v));
}

template <int kPlace>
FloatQuad FloatQuad::spread() const {
    return FloatQuad(_mm_shuffle_ps(m_v, m_v, _MM_SHUFFLE(kPlace, kPlace, kPlace, kPlace)));
}

inline FloatQuad FloatQuad::orLess(const FloatQuad& o) const {
    return FloatQuad(_mm_min_ps(m_v, o.m_v));
}

inline FloatQuad FloatQuad::orGreater(const FloatQuad& o) const {
    return FloatQuad(_mm_max_ps(m_v, o.m_v));
}

inline FloatQuad FloatQuad::orFarther(const FloatQuad& withoutSign) const {
    // Without the sign, the bits of floats are in the order of their magnitudes.
    const __m128i a = _mm_and_si128(_mm_castps_si128(m_v), _mm_set1_epi32(0x7fff'ffff));
    const __m128i b = _mm_castps_si128(withoutSign.m_v);
    const __m128i isFarther = _mm_cmpgt_epi32(a, b);
    return FloatQuad(_mm_castsi128_ps(
        _mm_or_si128(_mm_and_si128(isFarther, a), _mm_andnot_si128(isFarther, b))));
}

#else

inline FloatQuad FloatQuad::read(const UPoint3<float>& p) {
    return of(p);
}

inline UVector3<float> FloatQuad::vector() const {
    return {m_v[0], m_v[1], m_v[2]};
}

inline FloatQuad FloatQuad::operator+(const FloatQuad& o) const {
    return with(o, [](float a, float b) { return a + b; });
}

inline FloatQuad FloatQuad::operator-(const FloatQuad& o) const {
    return with(o, [](float a, float b) { return a - b; });
}

inline FloatQuad FloatQuad::operator*(const FloatQuad& o) const {
    return with(o, [](float a, float b) { return a * b; });
}

template <int kPlace>
FloatQuad FloatQuad::spread() const {
    return FloatQuad(m_v[kPlace]);
}

inline FloatQuad FloatQuad::orLess(const FloatQuad& o) const {
    return with(o, [](float a, float b) { return a < b ? a : b; });
}

inline FloatQuad FloatQuad::orGreater(const FloatQuad& o) const {
    return with(o, [](float a, float b) { return a > b ? a : b; });
}

inline FloatQuad FloatQuad::orFarther(const FloatQuad& withoutSign) const {
    return with(withoutSign, [](float a, float b) {
        const std::uint32_t bits = std::bit_cast<std::uint32_t>(a) & 0x7fff'ffffu;
        return bits > std::bit_cast<std::uint32_t>(b) ? std::bit_cast<float>(bits) : b;
    });
}

#endif

#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"
#include "common/Sse2.h"

namespace Tesk::minbox {

/// The three coordinates of a point, and a fourth meaningless number, in the lanes of a SIMD
/// register if there is one. Each lane rounds as a single float does.
class FloatQuad {
 public:
    explicit FloatQuad(float all) : FloatQuad(all, all, all) {}
    explicit FloatQuad(const UVector3<float>& v) : FloatQuad(v.x, v.y, v.z) {}

    /// Reads four floats, so the point must not be the last of an array.
    static FloatQuad read(const UPoint3<float>& p);
    /// Reads any point.
    static FloatQuad of(const UPoint3<float>& p) { return FloatQuad(p.x, p.y, p.z); }

    UVector3<float> vector() const;

    FloatQuad operator+(const FloatQuad& o) const;
    FloatQuad operator-(const FloatQuad& o) const;
    FloatQuad operator*(const FloatQuad& o) const;

    /// One lane copied to all.
    template <int kLane>
    FloatQuad spread() const;

    /// In each lane, this number if it is less, or greater, than the other one, else the other.
    FloatQuad orLess(const FloatQuad& o) const;
    FloatQuad orGreater(const FloatQuad& o) const;

    /// In each lane, the greater magnitude; NaN counts as greater than infinity.
    ///
    /// @param withoutSign  has no negative lanes
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

template <int kLane>
FloatQuad FloatQuad::spread() const {
    return FloatQuad(_mm_shuffle_ps(m_v, m_v, _MM_SHUFFLE(kLane, kLane, kLane, kLane)));
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

template <int kLane>
FloatQuad FloatQuad::spread() const {
    return FloatQuad(m_v[kLane]);
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

}  // namespace Tesk::minbox

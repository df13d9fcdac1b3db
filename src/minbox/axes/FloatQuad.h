#pragma once

#include <array>
#include <bit>
#include <cstdint>

#include "TeskCommon/Sse2.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"

namespace Tesk::minbox {

/// The three coordinates of a point, and a fourth meaningless number, in the lanes of a SIMD
/// register if there is one. Each lane rounds as a single float does.
class FloatQuad {
 public:
    explicit FloatQuad(float all) : FloatQuad(all, all, all) {}
    explicit FloatQuad(const UVector3<float>& v) : FloatQuad(v.x, v.y, v.z) {}

    /// Reads any point.
    static FloatQuad of(const UPoint3<float>& p) { return FloatQuad(p.x, p.y, p.z); }

    // Besides the usual operators there are:
    //   read(p)          of(p), but for speed it reads four floats: not for an array's last point
    //   spread<lane>()   one lane copied to all
    //   orLess(o)        in each lane, this number if it is less than the other, else the other
    //   orGreater(o)     the same with greater
    //   orFarther(o)     in each lane, the greater magnitude, where NaN counts as greater than
    //                    infinity; no lane of the other may be negative
#ifdef TESK_HAS_SSE2
    static FloatQuad read(const UPoint3<float>& p) {
        return FloatQuad(_mm_loadu_ps(&p.x));
    }

    UVector3<float> vector() const {
        std::array<float, 4> v;
        _mm_storeu_ps(v.data(), m_v);
        return {v[0], v[1], v[2]};
    }

    FloatQuad operator+(const FloatQuad& o) const {
        return FloatQuad(_mm_add_ps(m_v, o.m_v));
    }
    FloatQuad operator-(const FloatQuad& o) const {
        return FloatQuad(_mm_sub_ps(m_v, o.m_v));
    }
    FloatQuad operator*(const FloatQuad& o) const {
        return FloatQuad(_mm_mul_ps(m_v, o.m_v));
    }
    FloatQuad orLess(const FloatQuad& o) const {
        return FloatQuad(_mm_min_ps(m_v, o.m_v));
    }
    FloatQuad orGreater(const FloatQuad& o) const {
        return FloatQuad(_mm_max_ps(m_v, o.m_v));
    }

    template <int kLane>
    FloatQuad spread() const {
        return FloatQuad(_mm_shuffle_ps(m_v, m_v, _MM_SHUFFLE(kLane, kLane, kLane, kLane)));
    }

    FloatQuad orFarther(const FloatQuad& o) const {
        // Without the sign, the bits of floats are in the order of their magnitudes.
        const __m128i a = _mm_and_si128(_mm_castps_si128(m_v), _mm_set1_epi32(0x7fff'ffff));
        const __m128i b = _mm_castps_si128(o.m_v);
        const __m128i isFarther = _mm_cmpgt_epi32(a, b);
        return FloatQuad(_mm_castsi128_ps(
            _mm_or_si128(_mm_and_si128(isFarther, a), _mm_andnot_si128(isFarther, b))));
    }

 private:
    FloatQuad(float x, float y, float z) : m_v(_mm_setr_ps(x, y, z, 0.0f)) {}
    explicit FloatQuad(__m128 v) : m_v(v) {}

    __m128 m_v;
#else
    static FloatQuad read(const UPoint3<float>& p) {
        return of(p);
    }

    UVector3<float> vector() const {
        return m_v;
    }

    FloatQuad operator+(const FloatQuad& o) const {
        return FloatQuad(m_v + o.m_v);
    }
    FloatQuad operator-(const FloatQuad& o) const {
        return FloatQuad(m_v - o.m_v);
    }
    FloatQuad operator*(const FloatQuad& o) const {
        return with(o, [](float a, float b) { return a * b; });
    }
    FloatQuad orLess(const FloatQuad& o) const {
        return with(o, [](float a, float b) { return a < b ? a : b; });
    }
    FloatQuad orGreater(const FloatQuad& o) const {
        return with(o, [](float a, float b) { return a > b ? a : b; });
    }

    template <int kLane>
    FloatQuad spread() const {
        return FloatQuad(m_v[kLane]);
    }

    FloatQuad orFarther(const FloatQuad& o) const {
        return with(o, [](float a, float b) {
            const std::uint32_t bits = std::bit_cast<std::uint32_t>(a) & 0x7fff'ffffu;
            return bits > std::bit_cast<std::uint32_t>(b) ? std::bit_cast<float>(bits) : b;
        });
    }

 private:
    FloatQuad(float x, float y, float z) : m_v(x, y, z) {}

    template <class Operation>
    FloatQuad with(const FloatQuad& o, Operation operation) const {
        return {operation(m_v.x, o.m_v.x), operation(m_v.y, o.m_v.y), operation(m_v.z, o.m_v.z)};
    }

    UVector3<float> m_v;
#endif
};

}  // namespace Tesk::minbox

#pragma once

#include <cmath>
#include <cstdint>

#include "GridPoints.h"

namespace Tesk::hull {

/// An integer vector, wide enough for products of two coordinate differences (below 2^54).
struct WideVector {
    std::int64_t x;
    std::int64_t y;
    std::int64_t z;

    bool isZero() const { return x == 0 && y == 0 && z == 0; }
};

inline WideVector difference(const GridPoint& a, const GridPoint& b) {
    return {std::int64_t{a.x} - b.x, std::int64_t{a.y} - b.y, std::int64_t{a.z} - b.z};
}

/// The vector product of two differences, exact.
inline WideVector cross(const WideVector& u, const WideVector& v) {
    return {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
}

/// The sign of wide · u for a difference u: exact, though the sum takes up to 82 bits. The wide
/// components are cut in two parts of at most 28 bits, so that both sums fit 64 bits.
inline int dotSign(const WideVector& wide, const WideVector& u) {
    constexpr int kBits = 28;
    constexpr std::int64_t kMask = (std::int64_t{1} << kBits) - 1;
    const std::int64_t low =
        (wide.x & kMask) * u.x + (wide.y & kMask) * u.y + (wide.z & kMask) * u.z;
    const std::int64_t high = (wide.x >> kBits) * u.x + (wide.y >> kBits) * u.y +
                              (wide.z >> kBits) * u.z + (low >> kBits);
    if (high != 0) return high > 0 ? 1 : -1;
    return (low & kMask) != 0 ? 1 : 0;
}

/// The oriented plane through three grid points, with an exact side test. Almost every test is
/// decided in doubles, with a bound on their rounding; the rest in integers.
class ExactPlane {
 public:
    ExactPlane() = default;

    ExactPlane(const GridPoint& a, const GridPoint& b, const GridPoint& c)
        : m_normal(cross(difference(b, a), difference(c, a))),
          m_origin(a),
          m_x(static_cast<double>(m_normal.x)),
          m_y(static_cast<double>(m_normal.y)),
          m_z(static_cast<double>(m_normal.z)) {
        m_offset = m_x * a.x + m_y * a.y + m_z * a.z;
        // Coordinates stay below 2^27 and sums below 2^27 · (|x| + |y| + |z|). The roundings of
        // three components, three products and three sums, on both sides, stay below 2^-49 of that.
        m_bound = (std::fabs(m_x) + std::fabs(m_y) + std::fabs(m_z)) * 0x1p-22;
    }

    /// The distance of p above the plane times the normal's length, rounded.
    double height(const GridPoint& p) const { return m_x * p.x + m_y * p.y + m_z * p.z - m_offset; }

    /// 1 above the plane (where a, b, c run counter-clockwise), −1 below, 0 on it: exact.
    int side(const GridPoint& p) const { return sideOf(height(p), p); }

    /// side(p), given height(p).
    int sideOf(double heightOfP, const GridPoint& p) const {
        if (heightOfP > m_bound) return 1;
        if (heightOfP < -m_bound) return -1;
        return dotSign(m_normal, difference(p, m_origin));
    }

    bool isAbove(const GridPoint& p) const { return side(p) > 0; }

    const WideVector& normal() const { return m_normal; }

 private:
    WideVector m_normal{};
    GridPoint m_origin{};
    double m_x = 0.0;
    double m_y = 0.0;
    double m_z = 0.0;
    double m_offset = 0.0;
    double m_bound = 0.0;
};

}  // namespace Tesk::hull

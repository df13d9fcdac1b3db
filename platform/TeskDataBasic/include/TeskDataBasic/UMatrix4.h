#pragma once

#include <array>
#include <cstddef>

#include "TeskDataBasic/Transcendental.h"
#include "TeskDataBasic/UVector3.h"

/// A 4×4 transform for row vectors: p' = p · M, so A · B applies A first; the translation is in
/// row 3. Default-constructed, it is the identity.
template <class T>
class UMatrix4 {
 public:
    constexpr UMatrix4() = default;

    constexpr T& at(int row, int col) { return m_cells[cell(row, col)]; }
    constexpr T at(int row, int col) const { return m_cells[cell(row, col)]; }

    /// The translation by v.
    static constexpr UMatrix4 CreateTransfMatrix(const UVector3<T>& v) {
        UMatrix4 m;
        m.at(3, 0) = v.x;
        m.at(3, 1) = v.y;
        m.at(3, 2) = v.z;
        return m;
    }

    /// The right-handed rotation by angleRad about the axis through the origin. The axis may have
    /// any length; the zero axis gives the identity. Computed in double, each entry rounded once.
    static UMatrix4 CreateRotateMatrix(T angleRad, const UVector3<T>& axis) {
        UMatrix4 m;
        const UVector3<double> n = axis.template As<double>().GetNormal();
        if (n == UVector3<double>()) return m;
        const double c = Tesk::cosine(static_cast<double>(angleRad));
        const double s = Tesk::sine(static_cast<double>(angleRad));
        const double rest = 1.0 - c;
        const double entries[3][3] = {
            {c + n.x * n.x * rest, n.x * n.y * rest + n.z * s, n.x * n.z * rest - n.y * s},
            {n.x * n.y * rest - n.z * s, c + n.y * n.y * rest, n.y * n.z * rest + n.x * s},
            {n.x * n.z * rest + n.y * s, n.y * n.z * rest - n.x * s, c + n.z * n.z * rest}};
        for (int row = 0; row < 3; ++row) {
            for (int col = 0; col < 3; ++col) m.at(row, col) = static_cast<T>(entries[row][col]);
        }
        return m;
    }

    /// The matrix product; each entry is summed over k = 0..3 in order.
    constexpr UMatrix4 operator*(const UMatrix4& b) const {
        UMatrix4 product;
        for (int row = 0; row < 4; ++row) {
            for (int col = 0; col < 4; ++col) {
                T sum = at(row, 0) * b.at(0, col);
                for (int k = 1; k < 4; ++k) sum = sum + at(row, k) * b.at(k, col);
                product.at(row, col) = sum;
            }
        }
        return product;
    }
    constexpr UMatrix4& operator*=(const UMatrix4& b) { return *this = *this * b; }

    /// Whether every entry equals the identity's exactly.
    constexpr bool isIdenticalMatrix() const { return *this == UMatrix4(); }

    constexpr bool operator==(const UMatrix4&) const = default;

 private:
    static constexpr std::size_t cell(int row, int col) {
        return static_cast<std::size_t>(row * 4 + col);
    }

    std::array<T, 16> m_cells = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

#pragma once

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"

/// A position in space, a row vector: p' = p · M.
template <class T>
class UPoint3 {
 public:
    constexpr UPoint3() = default;
    constexpr UPoint3(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}

    /// Coordinate 0, 1 or 2.
    constexpr T& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
    constexpr T operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }

    constexpr UVector3<T> operator-(const UPoint3& b) const { return {x - b.x, y - b.y, z - b.z}; }
    constexpr UPoint3 operator+(const UVector3<T>& v) const { return {x + v.x, y + v.y, z + v.z}; }
    constexpr UPoint3 operator-(const UVector3<T>& v) const { return {x - v.x, y - v.y, z - v.z}; }

    /// Coordinate-wise sum and quotient, to compute means.
    constexpr UPoint3& operator+=(const UPoint3& b) { return *this = {x + b.x, y + b.y, z + b.z}; }
    constexpr UPoint3 operator/(T s) const { return {x / s, y / s, z / s}; }

    /// The dot product of the position vector with v, summed in the order x, y, z.
    constexpr T Dot(const UVector3<T>& v) const { return x * v.x + y * v.y + z * v.z; }

    /// The point transformed by an affine matrix: each coordinate is ((x·m0 + y·m1) + z·m2) + m3,
    /// summed in this order. The fourth column of the matrix is not read.
    constexpr UPoint3 operator*(const UMatrix4<T>& m) const {
        return {x * m.at(0, 0) + y * m.at(1, 0) + z * m.at(2, 0) + m.at(3, 0),
                x * m.at(0, 1) + y * m.at(1, 1) + z * m.at(2, 1) + m.at(3, 1),
                x * m.at(0, 2) + y * m.at(1, 2) + z * m.at(2, 2) + m.at(3, 2)};
    }

    constexpr bool operator==(const UPoint3&) const = default;

    T x = 0;
    T y = 0;
    T z = 0;
};

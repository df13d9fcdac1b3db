#pragma once

/// A direction or difference in the plane.
template <class T>
class UVector2 {
 public:
    constexpr UVector2() = default;
    constexpr UVector2(T xValue, T yValue) : x(xValue), y(yValue) {}

    /// The 2D cross product x·b.y − y·b.x, twice the signed area of the triangle they span.
    constexpr T operator*(const UVector2& b) const { return x * b.y - y * b.x; }

    constexpr bool operator==(const UVector2&) const = default;

    T x = 0;
    T y = 0;
};

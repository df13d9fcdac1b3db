#pragma once

#include "TeskDataBasic/UVector2.h"

/// A position in the plane.
template <class T>
class UPoint2 {
 public:
    constexpr UPoint2() = default;
    constexpr UPoint2(T xValue, T yValue) : x(xValue), y(yValue) {}

    constexpr UVector2<T> operator-(const UPoint2& b) const { return {x - b.x, y - b.y}; }

    constexpr bool operator==(const UPoint2&) const = default;

    T x = 0;
    T y = 0;
};

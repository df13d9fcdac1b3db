#pragma once

#include <limits>

#include "TeskDataBasic/UPoint3.h"

/// An axis-aligned box in space, grown point by point.
///
/// NaN coordinates are ignored. Both bounds of an axis without coordinates read as 0, so the box of
/// no points is the origin. A zero bound is always +0, even if it came from −0, so bounds do not
/// depend on the order of the points.
template <class T>
class UBox3 {
 public:
    /// The largest finite number: no finite coordinate lies beyond it.
    static constexpr T kFar = std::numeric_limits<T>::max();

    constexpr UBox3() = default;
    constexpr UBox3(const UPoint3<T>& low, const UPoint3<T>& high) : m_low(low), m_high(high) {}

    constexpr void Extend(const UPoint3<T>& p) {
        for (int axis = 0; axis < 3; ++axis) {
            if (p[axis] < m_low[axis]) m_low[axis] = p[axis];
            if (p[axis] > m_high[axis]) m_high[axis] = p[axis];
        }
    }

    constexpr T MinX() const { return low(0); }
    constexpr T MaxX() const { return high(0); }
    constexpr T MinY() const { return low(1); }
    constexpr T MaxY() const { return high(1); }
    constexpr T MinZ() const { return low(2); }
    constexpr T MaxZ() const { return high(2); }

    constexpr UPoint3<T> Center() const {
        constexpr T kHalf = static_cast<T>(0.5);
        return {(MinX() + MaxX()) * kHalf, (MinY() + MaxY()) * kHalf, (MinZ() + MaxZ()) * kHalf};
    }

    /// (size along x · size along y) · size along z.
    constexpr T Volume() const { return (MaxX() - MinX()) * (MaxY() - MinY()) * (MaxZ() - MinZ()); }

 private:
    constexpr bool isSeen(int axis) const { return m_low[axis] <= m_high[axis]; }
    constexpr T low(int axis) const { return isSeen(axis) ? m_low[axis] + T(0) : T(0); }
    constexpr T high(int axis) const { return isSeen(axis) ? m_high[axis] + T(0) : T(0); }

    UPoint3<T> m_low{kFar, kFar, kFar};
    UPoint3<T> m_high{-kFar, -kFar, -kFar};
};

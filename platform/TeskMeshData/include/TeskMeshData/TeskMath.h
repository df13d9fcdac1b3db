#pragma once

#include "TeskDataBasic/Transcendental.h"
#include "TeskDataBasic/UPoint3.h"

/// Small measurements on points and vectors.
template <class T>
class TeskMath {
 public:
    /// Half the length of (p1 − p0) × (p2 − p0).
    static T CalculateTriangleArea(const UPoint3<T>& p0, const UPoint3<T>& p1,
                                   const UPoint3<T>& p2) {
        return ((p1 - p0) * (p2 - p0)).GetLength() * static_cast<T>(0.5);
    }

    /// The angle between two vectors of any length, in [0, pi] rad; accurate near both ends, where
    /// an arc cosine would lose half of the digits. 0 if one of them is zero.
    static T AngleBetween(const UVector3<T>& a, const UVector3<T>& b) {
        const UVector3<double> u = a.template As<double>().GetNormal();
        const UVector3<double> v = b.template As<double>().GetNormal();
        return static_cast<T>(Tesk::angleOf((u * v).GetLength(), u | v));
    }
};

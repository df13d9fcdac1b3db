#pragma once

#include <numbers>

#include "TeskDataBasic/Transcendental.h"

namespace Tesk::orient {

/// The cosine of an overhang angle in degrees, computed in double.
inline float overhangCosineOf(float angleDeg) {
    const double angleRad = static_cast<double>(angleDeg) * std::numbers::pi / 180.0;
    return static_cast<float>(Tesk::cosine(angleRad));
}

/// Whether a surface overhangs, given the z of its unit normal. A surface at exactly the angle does
/// not; nor does one whose normal is NaN.
inline bool isOverhang(float normalZ, float overhangCosine) {
    return normalZ < -overhangCosine;
}

}  // namespace Tesk::orient

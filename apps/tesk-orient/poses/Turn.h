#pragma once

#include <string>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"

namespace App {

/// A turn by an angle about an axis, right-handed.
struct Turn {
    UVector3<float> axis;   ///< unit vector; zero if no turn is needed
    float angleRad = 0.0f;  ///< 0 to pi
};

/// The turn that a rigid matrix for row vectors makes; its translation does not count.
Turn turnIn(const UMatrix4<float>& matrix);

/// What a person is to do: "turn the part 12.34° about the axis (…)".
std::string textOf(const Turn& turn);

}  // namespace App

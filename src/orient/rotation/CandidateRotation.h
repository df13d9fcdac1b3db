#pragma once

#include "TeskDataBasic/UVector3.h"

namespace Tesk::orient {

/// Radians from a direction to +Z, 0..pi.
float candidateAngle(UVector3<float> direction);

/// The axis about which candidateAngle() turns a direction onto +Z: direction × (0, 0, 1), not
/// normalised; exactly (0, 1, 0) for (0, 0, −1).
UVector3<float> candidateAxis(const UVector3<float>& direction);

}  // namespace Tesk::orient

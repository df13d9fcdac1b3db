#pragma once

#include "TeskDataBasic/UVector3.h"

namespace Tesk::orient {

/// The angle between a direction and +Z, in radians, 0 to pi.
float candidateAngle(UVector3<float> direction);

/// The axis about which a turn by candidateAngle() brings a direction to +Z: direction × (0, 0, 1),
/// not normalised, or (0, 1, 0) for exactly (0, 0, −1).
UVector3<float> candidateAxis(const UVector3<float>& direction);

}  // namespace Tesk::orient

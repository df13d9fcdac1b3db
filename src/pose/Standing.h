#pragma once

#include "BuildPose.h"
#include "orient/turn/TurnedPart.h"
#include "pose/FacetMeasures.h"
#include "pose/PoseMesh.h"

namespace Tesk::pose {

/// The tilt that a pose bears: OptimizeOrient::PoseMeasures::tiltMarginDeg.
float tiltMarginOf(const PoseMesh& mesh, const orient::TurnedPart& part, const Contact& contact);

/// Whether a contact is large enough for a solid of that volume to stand on.
bool isContactEnough(double contactArea, double volume);

/// The tilt that a pose has to bear to stand, degrees.
constexpr float kLeastTiltDeg = 5.0f;

}  // namespace Tesk::pose

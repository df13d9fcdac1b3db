#pragma once

#include "BuildPose.h"
#include "orient/turn/TurnedPart.h"
#include "pose/facets/FacetMeasures.h"
#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// The tilt that a pose bears: OptimizeOrient::PoseMeasures::tiltMarginDeg.
float tiltMarginOf(const PoseMesh& mesh, const orient::TurnedPart& part, const Contact& contact);

/// Whether a contact is large enough for a solid of that volume to stand on.
bool isContactEnough(double contactArea, double volume);

/// Whether a pose stands: OptimizeOrient::PoseMeasures::stands.
///
/// @param volume  of the solid
bool isStanding(bool liesFlat, float tiltMarginDeg, float contactArea, double volume);

}  // namespace Tesk::pose

#pragma once

#include "BuildPose.h"
#include "pose/geometry/PoseTurn.h"
#include "pose/spin/WallSpin.h"

namespace Tesk::pose {

/// Whether a pose sets a face that must be kept off down on the plate or on support.
bool isKeptOff(const OptimizeOrient::PoseGoal& goal, const PoseTurn& turn);

/// How a pose goes into the build volume.
enum class Fit { kAsItIs, kTurnedBy90, kNot };

Fit fitOf(const OptimizeOrient::PoseGoal& goal, const PoseSize& size);

/// By what factor a size is too large for the build volume, turned by 90° if that is better; at
/// most 1 if it fits.
double excessOf(const OptimizeOrient::PoseGoal& goal, const PoseSize& size);

}  // namespace Tesk::pose

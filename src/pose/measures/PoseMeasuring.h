#pragma once

#include <span>
#include <vector>

#include "BuildPose.h"
#include "pose/mesh/PoseMesh.h"
#include "pose/work/PoseWork.h"

namespace Tesk::pose {

/// Measures poses of a mesh: see OptimizeOrient::PoseMeasures. The support volume has the bits of
/// evaluateOrient() for a mesh with the placement M · R, the direction +Z and the base height 0.
std::vector<OptimizeOrient::BuildPose> measurePoses(const PoseMesh& mesh,
                                                    const OptimizeOrient::PoseGoal& goal,
                                                    std::span<const UMatrix4<float>> rotations,
                                                    PoseWork& work);

/// What a pose costs by what was measured of it.
OptimizeOrient::PoseCost costOf(const OptimizeOrient::PoseGoal& goal, float supportVolume,
                                float overhangArea, float height);

}  // namespace Tesk::pose

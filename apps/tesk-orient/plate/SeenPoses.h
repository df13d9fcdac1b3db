#pragma once

#include "BuildPose.h"
#include "OrientOptimizer.h"
#include "plate/ItemTurn.h"

namespace App {

/// A shape's poses as an item sees them: rotations from where it lies, by the least turn of each;
/// exactly the identity where the item has that rotation.
///
/// @param present   the item's rotation
/// @param goal      decides which spins about Z a pose does not mind
/// @param asItLies  the pose in which the item lies; its rotation becomes the identity
OptimizeOrient::BuildPoses seenFrom(const UMatrix4<double>& present,
                                    const OptimizeOrient::PoseGoal& goal,
                                    OptimizeOrient::BuildPoses poses,
                                    OptimizeOrient::BuildPose asItLies);

/// The same of an orientation that was ranked by weights.
OptimizeOrient::OptOrientation seenFrom(const UMatrix4<double>& present,
                                        OptimizeOrient::OptOrientation orientation);

/// The rotation of an orientation.
UMatrix4<float> rotationOf(const OptimizeOrient::OptOrientation& orientation);

/// Puts a pose in front of the others, at most 12 in all, and drops the one with the same direction
/// up.
void putFirst(OptimizeOrient::BuildPoses& poses, const OptimizeOrient::BuildPose& pose);

}  // namespace App

#pragma once

#include <functional>
#include <vector>

#include "BuildPose.h"
#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// A direction of the placed mesh that may point up.
struct PoseCandidate {
    UVector3<float> up;
    float height = 0.0f;
    float supportVolume = 0.0f;
    /// Cost without setting down. Beyond the best `exact` candidates, a lower bound without the
    /// term of the overhanging area.
    float cost = 0.0f;
};

/// The candidate directions of a mesh: those of OrientOptimizer, with the normals as placed, and
/// from random numbers that start anew at every call.
std::vector<UVector3<float>> poseDirections(const MeshKernel& kernel, const PoseMesh& mesh);

/// The fixed directions of poseDirections() in the frame of a turned part, as directions of the
/// placed mesh.
std::vector<UVector3<float>> fixedDirectionsIn(const UMatrix4<float>& rotation);

/// Measures directions and orders them by cost; of equal costs, the earlier direction comes first.
/// Directions whose cost is not finite are left out. The overhanging area is measured only as far
/// as needed to determine the best `exact` candidates. The rest follow, ordered by their cost
/// without it.
///
/// @param progress  called with 10..90, as OrientOptimizer does
std::vector<PoseCandidate> costedCandidates(const PoseMesh& mesh,
                                            const OptimizeOrient::PoseGoal& goal,
                                            const std::vector<UVector3<float>>& directions,
                                            std::size_t exact,
                                            const std::function<void(int)>& progress);

/// The directions whose height alone costs less than one limit, and height and overhangs together
/// less than another: found without sampling.
std::vector<UVector3<float>> worthSampling(const PoseMesh& mesh,
                                           const OptimizeOrient::PoseGoal& goal,
                                           const std::vector<UVector3<float>>& directions,
                                           float mostForHeight, float most);

}  // namespace Tesk::pose

#include "plate/SeenPoses.h"

#include <cmath>
#include <utility>

#include "plate/Polar.h"
#include "plate/PresentPose.h"
#include "poses/Turn.h"

namespace App {

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::OptOrientation;

/// Whether two rotations that differ by a spin about Z differ by a quarter turn.
bool isQuarterTurn(const UMatrix4<double>& a, const UMatrix4<double>& b) {
    return std::fabs((transposed(a) * b).at(0, 0)) < 0.5;
}

bool pointsSameWayUp(const BuildPose& a, const BuildPose& b) {
    constexpr float kAlike = 2e-4f;
    for (int row = 0; row < 3; ++row) {
        if (std::fabs(a.rotation.at(row, 2) - b.rotation.at(row, 2)) > kAlike) return false;
    }
    return true;
}

}  // namespace

BuildPoses seenFrom(const UMatrix4<double>& present, const OptimizeOrient::PoseGoal& goal,
                    BuildPoses poses, BuildPose asItLies) {
    for (BuildPose& pose : poses.poses) {
        const PoseRotations targets = rotationsOf(pose.rotation, spinsOf(goal, pose));
        const UMatrix4<double> nearest = nearestTo(present, targets);
        if (isQuarterTurn(targets.front(), nearest)) {
            std::swap(pose.measures.footprintX, pose.measures.footprintY);
        }
        pose.rotation = toFloat(turnBetween(present, nearest));
    }
    poses.asItLies = std::move(asItLies);
    poses.asItLies.rotation = {};
    return poses;
}

UMatrix4<float> rotationOf(const OptOrientation& orientation) {
    return UMatrix4<float>::CreateRotateMatrix(orientation.angle, orientation.axis);
}

OptOrientation seenFrom(const UMatrix4<double>& present, OptOrientation orientation) {
    const PoseRotations targets = rotationsOf(rotationOf(orientation), Spins::kQuarters);
    const Turn turn = turnIn(toFloat(turnBetween(present, nearestTo(present, targets))));
    orientation.axis = turn.axis;
    orientation.angle = turn.angleRad;
    return orientation;
}

void putFirst(BuildPoses& poses, const BuildPose& pose) {
    constexpr std::size_t kMostPoses = 12;
    std::erase_if(poses.poses,
                  [&](const BuildPose& other) { return pointsSameWayUp(pose, other); });
    poses.poses.insert(poses.poses.begin(), pose);
    if (poses.poses.size() > kMostPoses) poses.poses.resize(kMostPoses);
}

}  // namespace App

#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "BuildPose.h"
#include "plate/ItemTurn.h"

namespace App {

/// The poses in which a shape's items lie, each measured once.
class PresentPoses {
 public:
    /// Keeps references. `bestCost` is the total of the best pose.
    PresentPoses(const MeshKernel& kernel, const OptimizeOrient::PoseGoal& goal, float bestCost)
        : m_kernel(kernel), m_goal(goal), m_bestCost(bestCost) {}

    /// The shape as a rotation lays it.
    OptimizeOrient::BuildPose measured(const UMatrix4<double>& rotation);

    /// Whether an item that lies like this may stay: it is allowed, stands by itself, and costs no
    /// more than 1/0.99 times the best pose, which is the rule of findBuildPoses() for a part as it
    /// lies.
    bool mayStay(const UMatrix4<double>& rotation);

    /// How many poses have been measured.
    std::size_t count() const { return m_known.size(); }

 private:
    const MeshKernel& m_kernel;
    const OptimizeOrient::PoseGoal& m_goal;
    float m_bestCost;
    std::vector<OptimizeOrient::BuildPose> m_known;
};

/// Whether a pose keeps the goal's KeepOff rules and fits the build volume without further turns.
bool isAllowed(const OptimizeOrient::PoseGoal& goal, const UMatrix4<double>& rotation,
               const OptimizeOrient::PoseMeasures& measures);

/// Quarter turns about Z, but halves where only they fit the build volume.
Spins spinsOf(const OptimizeOrient::PoseGoal& goal, const OptimizeOrient::BuildPose& pose);

/// The goal for a shape whose KeepOff rules are those of the object before it is stretched.
OptimizeOrient::PoseGoal goalFor(OptimizeOrient::PoseGoal goal, const UMatrix4<double>& stretch);

}  // namespace App

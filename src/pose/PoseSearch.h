#pragma once

#include <functional>
#include <vector>

#include "BuildPose.h"
#include "TeskDebug/StopWatchLog.h"
#include "pose/PoseCandidates.h"
#include "pose/PoseMesh.h"
#include "pose/PoseWork.h"
#include "pose/SettingDown.h"
#include "pose/WallSpin.h"

namespace Tesk::pose {

/// The search behind OptimizeOrient::findBuildPoses(), of one call.
///
/// Candidates are taken in the order of their costs, a batch at a time, until there are poses: set
/// down, which merges some, then turned about Z and measured. What the fixed directions are depends
/// on the frame of the mesh; those in the frame of the winner are therefore tried after it, where
/// they can cost less, and again where one of them wins: the part turned by the winner finds
/// nothing better then.
class PoseSearch {
 public:
    /// Keeps references to all.
    PoseSearch(const MeshKernel& kernel, const OptimizeOrient::PoseGoal& goal,
               const std::function<void(int)>& progress);

    OptimizeOrient::BuildPoses run();

 private:
    using BuildPose = OptimizeOrient::BuildPose;
    using Directions = std::vector<UVector3<float>>;

    void tryCandidates(const std::vector<PoseCandidate>& candidates);
    void tryFramesOfWinners();
    std::vector<PoseOnFace> setDownAll(const Directions& ups);
    std::vector<PoseOnFace> takeNew(const std::vector<PoseOnFace>& poses);
    void count(const PoseOnFace& pose);
    void measure(const std::vector<PoseOnFace>& upright);
    void measureFallen();
    bool turnToFit(const PoseOnFace& pose, UMatrix4<float>& rotation, PoseSize& size) const;
    void noteMisfit(const PoseSize& size);
    Directions unknown(const Directions& directions) const;
    Directions reachable(const Directions& directions);
    void rank();
    void putThriftiestFirst();
    float keyOf(const BuildPose& pose) const;
    void report(int percent) const;
    PoseWork nextStage();

    const MeshKernel& m_kernel;
    const OptimizeOrient::PoseGoal& m_goal;
    const std::function<void(int)>& m_progress;
    int m_percent = 90;
    StopWatchLog m_log;
    PoseMesh m_mesh;
    Directions m_directions;          ///< that were candidates
    std::vector<PoseOnFace> m_found;  ///< no two alike
    OptimizeOrient::BuildPoses m_result;
    bool m_isMeasuredAsItLies = false;
};

}  // namespace Tesk::pose

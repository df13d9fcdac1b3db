#pragma once

#include <functional>
#include <vector>

#include "BuildPose.h"
#include "TeskDebug/StopWatchLog.h"
#include "pose/candidates/PoseCandidates.h"
#include "pose/mesh/PoseMesh.h"
#include "pose/resting/SettingDown.h"
#include "pose/spin/WallSpin.h"
#include "pose/work/PoseWork.h"

namespace Tesk::pose {

/// The search behind OptimizeOrient::findBuildPoses(), of one call.
///
/// Candidates are taken in batches, in the order of their costs, until there are poses. They are
/// set down, which merges some of them, then turned about Z and measured. The fixed directions
/// depend on the frame of the mesh. They are therefore tried again in the frame of the winner, if
/// they could cost less, until no new winner appears: a part in its best pose then keeps it.
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
    void tryStableFaces();
    void tryFramesOfWinners();
    std::vector<PoseOnFace> setDownAll(const Directions& ups);
    std::vector<PoseOnFace> takeNew(const std::vector<PoseOnFace>& poses);
    void count(const PoseOnFace& pose);
    void measure(const std::vector<PoseOnFace>& upright);
    void measureThoseThatFall();
    bool turnToFit(const PoseOnFace& pose, UMatrix4<float>& rotation, PoseSize& size) const;
    void noteMisfit(const PoseSize& size);
    Directions notYetTried(const Directions& directions) const;
    Directions cheapEnough(const Directions& directions);
    void rank();
    void putLeastSupportFirst();
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

#include "BuildPose.h"
#include "pose/PoseSearch.h"
#include "pose/measures/PoseMeasuring.h"

OptimizeOrient::BuildPoses OptimizeOrient::findBuildPoses(
    const MeshKernel& mesh, const PoseGoal& goal, const std::function<void(int)>& progress) {
    return Tesk::pose::PoseSearch(mesh, goal, progress).run();
}

OptimizeOrient::BuildPose OptimizeOrient::measurePose(const MeshKernel& mesh, const PoseGoal& goal,
                                                      const UMatrix4<float>& rotation) {
    const std::function<void(int)> none;
    Tesk::pose::PoseWork work(none, 0, 0);
    return Tesk::pose::measurePoses(Tesk::pose::PoseMesh(mesh), goal, {&rotation, 1}, work).front();
}

#include "pose/spin/PoseLimits.h"

#include <gtest/gtest.h>

#include "PoseShapes.h"

using namespace Tesk::pose;

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::findBuildPoses;
using OptimizeOrient::KeepOff;
using OptimizeOrient::PoseGoal;

PoseGoal within(float x, float y, float z) {
    PoseGoal goal;
    goal.buildVolume = {x, y, z};
    return goal;
}

PoseGoal keepingOff(const UVector3<float>& direction, float angleDeg) {
    PoseGoal goal;
    goal.keepOff = {{direction, angleDeg}};
    return goal;
}

TEST(PoseLimits, ASizeFitsAsItIsTurnedOrNot) {
    EXPECT_EQ(fitOf(within(0, 0, 0), {1e6, 1e6, 1e6}), Fit::kAsItIs);
    EXPECT_EQ(fitOf(within(30, 20, 10), {30, 20, 10}), Fit::kAsItIs);
    EXPECT_EQ(fitOf(within(20, 30, 10), {30, 20, 10}), Fit::kTurnedBy90);
    EXPECT_EQ(fitOf(within(30, 20, 9), {30, 20, 10}), Fit::kNot);
    EXPECT_EQ(fitOf(within(0, 0, 9), {30, 20, 10}), Fit::kNot);
    EXPECT_EQ(fitOf(within(25, 25, 10), {30, 20, 10}), Fit::kNot);
    EXPECT_NEAR(excessOf(within(25, 25, 10), {30, 20, 10}), 1.2, 1e-6);
}

TEST(PoseLimits, AFaceIsKeptOffWithinItsAngle) {
    const PoseTurn none;
    EXPECT_TRUE(isKeptOff(keepingOff({0, 0, -2}, 0.0f), none));
    EXPECT_FALSE(isKeptOff(keepingOff({0, 0, 1}, 30.0f), none));
    EXPECT_TRUE(isKeptOff(keepingOff({1, 0, -1}, 46.0f), none));
    EXPECT_FALSE(isKeptOff(keepingOff({1, 0, -1}, 44.0f), none));
    EXPECT_TRUE(isKeptOff(keepingOff({1, 0, -1}, -1.0f), none)) << "55 degrees where none is given";
    EXPECT_FALSE(isKeptOff(keepingOff({0, 0, 0}, 180.0f), none));
}

TEST(PoseLimits, PosesThatDoNotFitArePassedOverAndCounted) {
    const MeshKernel mesh = makeBox({0, 0, 0}, {100, 40, 20}).kernel();
    const BuildPoses poses = findBuildPoses(mesh, within(50, 50, 120));
    ASSERT_FALSE(poses.poses.empty());
    EXPECT_GT(poses.passedOver.tooLarge, 0);
    for (const BuildPose& pose : poses.poses) EXPECT_NEAR(pose.measures.height, 100.0f, 1e-3f);
}

TEST(PoseLimits, APoseIsTurnedBy90DegreesToFit) {
    const MeshKernel mesh = makeBox({0, 0, 0}, {100, 40, 10}).kernel();
    const BuildPoses poses = findBuildPoses(mesh, within(50, 110, 20));
    ASSERT_FALSE(poses.poses.empty());
    EXPECT_NEAR(poses.poses.front().measures.footprintX, 40.0f, 1e-3f);
    EXPECT_NEAR(poses.poses.front().measures.footprintY, 100.0f, 1e-3f);
}

TEST(PoseLimits, WhereNoneFitsTheNearestMisfitIsTold) {
    const MeshKernel mesh = makeBox({0, 0, 0}, {100, 40, 20}).kernel();
    const BuildPoses poses = findBuildPoses(mesh, within(30, 30, 90));
    EXPECT_TRUE(poses.poses.empty());
    EXPECT_FALSE(poses.noneStands);
    EXPECT_GT(poses.passedOver.tooLarge, 0);
    EXPECT_NEAR(poses.nearestMisfit.z, 100.0f, 1e-3f) << "100 of 90 is less than 40 of 30";
    EXPECT_GT(poses.asItLies.measures.height, 0.0f);
}

TEST(PoseLimits, AFaceThatMustBeKeptOffIsNotSetDown) {
    const MeshKernel mesh = makeTable().kernel();
    const BuildPoses free = findBuildPoses(mesh, {});
    ASSERT_FALSE(free.poses.empty());
    EXPECT_LT(upOfPose(free.poses.front().rotation).z, -0.99f);
    const BuildPoses kept = findBuildPoses(mesh, keepingOff({0, 0, 1}, -1.0f));
    ASSERT_FALSE(kept.poses.empty());
    EXPECT_GT(kept.passedOver.keptOff, 0);
    for (const BuildPose& pose : kept.poses) {
        EXPECT_GT(upOfPose(pose.rotation).z, -0.58f) << "the top looks no more than 35° down";
    }
}

TEST(PoseLimits, WhereEveryPoseIsForbiddenThereIsNone) {
    const BuildPoses poses = findBuildPoses(makeTable().kernel(), keepingOff({0, 0, 1}, 180.0f));
    EXPECT_TRUE(poses.poses.empty());
    EXPECT_GT(poses.passedOver.keptOff, 0);
    EXPECT_FALSE(poses.noneStands);
}

TEST(PoseLimits, PosesWithTooLittleContactArePassedOver) {
    PoseGoal goal;
    goal.leastContactArea = 1500.0f;
    const BuildPoses poses = findBuildPoses(makeBox({0, 0, 0}, {60, 40, 20}).kernel(), goal);
    ASSERT_FALSE(poses.poses.empty());
    EXPECT_GT(poses.passedOver.littleContact, 0);
    for (const BuildPose& pose : poses.poses) EXPECT_GE(pose.measures.contactArea, 1500.0f);
}

}  // namespace

#include <gtest/gtest.h>

#include "BuildPose.h"
#include "OrientOptimizer.h"
#include "PoseShapes.h"
#include "orient/candidates/RandomSource.h"
#include "tools/FloatBits.h"

using namespace Tesk::orient;

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::findBuildPoses;
using OptimizeOrient::measurePose;
using OptimizeOrient::PoseGoal;
using Matrix = UMatrix4<float>;

BuildPoses found(const Part& part, const PoseGoal& goal = {}) {
    return findBuildPoses(part.kernel(), goal);
}

/// The direction of the part before a turn that a pose of the turned part brings up.
UVector3<float> upBefore(const Matrix& turn, const Matrix& rotation) {
    return upOfPose(turn * rotation);
}

void expectDirection(const UVector3<float>& actual, const UVector3<float>& expected) {
    EXPECT_GT(actual | expected, 0.99999f) << actual.x << " " << actual.y << " " << actual.z;
}

TEST(FindBuildPoses, LaysATurnedTableOnItsTop) {
    for (const float angle : {0.3f, 1.1f, 2.5f}) {
        const BuildPoses poses = found(makeTable().placed(someTurn(angle)));
        ASSERT_FALSE(poses.poses.empty());
        const BuildPose& best = poses.poses.front();
        expectDirection(upBefore(someTurn(angle), best.rotation), {0.0f, 0.0f, -1.0f});
        EXPECT_TRUE(best.measures.stands);
        // The ends of the legs, which are boxes of their own, look down inside the plate.
        EXPECT_NEAR(best.cost.supportFilament(), 2.0f, 0.1f);
        EXPECT_FALSE(poses.noneStands);
        EXPECT_GT(poses.asItLies.cost.total(), best.cost.total());
    }
}

TEST(FindBuildPoses, LeavesAPartThatLiesWellExactlyAsItIs) {
    const BuildPoses poses = found(makeBox({0, 0, 0}, {30, 20, 10}));
    ASSERT_FALSE(poses.poses.empty());
    EXPECT_TRUE(poses.poses.front().rotation.isIdenticalMatrix());
    EXPECT_EQ(poses.poses.front().cost.total(), poses.asItLies.cost.total());
}

TEST(FindBuildPoses, SetsATiltedPartDownOnItsFace) {
    const Matrix tilt = Matrix::CreateRotateMatrix(0.035f, {1.0f, 1.0f, 0.0f});  // 2°
    const BuildPoses poses = found(makeBox({0, 0, 0}, {80, 60, 10}).placed(tilt));
    ASSERT_FALSE(poses.poses.empty());
    EXPECT_NEAR(poses.poses.front().measures.height, 10.0f, 1e-4f);
    EXPECT_NEAR(poses.poses.front().measures.contactArea, 4800.0f, 1.0f);
}

TEST(FindBuildPoses, LaysWallsAlongTheAxesAndTheLongSideAlongX) {
    const Matrix spin = Matrix::CreateRotateMatrix(0.5f, {0.0f, 0.0f, 1.0f});
    const BuildPoses poses = found(makeBox({0, 0, 0}, {20, 50, 8}).placed(spin));
    ASSERT_FALSE(poses.poses.empty());
    const BuildPose& best = poses.poses.front();
    EXPECT_NEAR(best.measures.footprintX, 50.0f, 1e-3f);
    EXPECT_NEAR(best.measures.footprintY, 20.0f, 1e-3f);
    EXPECT_NEAR(best.measures.height, 8.0f, 1e-3f);
}

TEST(FindBuildPoses, ListsPosesByCostAndNoTwoAlike) {
    const BuildPoses poses = found(makeColumnWithArm().scaled(3, 3, 3).placed(someTurn()));
    ASSERT_GT(poses.poses.size(), 2u);
    EXPECT_LE(poses.poses.size(), 12u);
    for (std::size_t i = 0; i < poses.poses.size(); ++i) {
        EXPECT_TRUE(poses.poses[i].measures.stands);
        // The first may cost up to 3 % more than the second, for less support.
        if (i > 1) {
            EXPECT_LE(poses.poses[i - 1].cost.total(), poses.poses[i].cost.total());
        }
        for (std::size_t k = 0; k < i; ++k) {
            EXPECT_LT(upOfPose(poses.poses[i].rotation) | upOfPose(poses.poses[k].rotation),
                      0.99999f);
        }
    }
    EXPECT_LE(poses.poses[0].cost.total(), 1.03f * poses.poses[1].cost.total());
}

TEST(FindBuildPoses, WhatItListsIsWhatMeasurePoseMeasures) {
    const MeshKernel mesh = makeTable().placed(someTurn()).kernel();
    const BuildPoses poses = findBuildPoses(mesh, {});
    for (const BuildPose& pose : poses.poses) {
        const BuildPose again = measurePose(mesh, {}, pose.rotation);
        EXPECT_TRUE(sameBits(again.cost.total(), pose.cost.total()));
        EXPECT_TRUE(sameBits(again.measures.contactArea, pose.measures.contactArea));
        EXPECT_TRUE(sameBits(again.measures.tiltMarginDeg, pose.measures.tiltMarginDeg));
        EXPECT_EQ(again.measures.stands, pose.measures.stands);
    }
    EXPECT_TRUE(sameBits(measurePose(mesh, {}, {}).cost.total(), poses.asItLies.cost.total()));
}

TEST(FindBuildPoses, TheLeastSupportGoalTradesHeightForSupport) {
    // An arch that can stand, with support under it, or lie on its side, which is higher.
    const Part bridge = makeBridge().scaled(1, 6, 1);
    const float balanced = found(bridge).poses.front().cost.supportFilament();
    const float least =
        found(bridge, PoseGoal::leastSupport()).poses.front().cost.supportFilament();
    EXPECT_LE(least, balanced);
}

TEST(FindBuildPoses, NeitherDependsOnTheHostsRandomNumbersNorAdvancesThem) {
    const Part part = makeColumnWithArm().placed(someTurn());
    OptimizeOrient::seedRandom(5);
    const int first = nextRandom();
    OptimizeOrient::seedRandom(5);
    const BuildPoses once = found(part);
    EXPECT_EQ(nextRandom(), first);
    OptimizeOrient::seedRandom(99);
    const BuildPoses again = found(part);
    ASSERT_EQ(once.poses.size(), again.poses.size());
    for (std::size_t i = 0; i < once.poses.size(); ++i) {
        EXPECT_EQ(once.poses[i].rotation, again.poses[i].rotation);
        EXPECT_EQ(once.poses[i].cost.total(), again.poses[i].cost.total());
    }
}

TEST(FindBuildPoses, FollowsThePlacementOfTheMesh) {
    const Part part = makeTable();
    const Matrix turn = someTurn() * Matrix::CreateTransfMatrix({100.0f, -50.0f, 7.0f});
    const BuildPoses poses = findBuildPoses(part.kernel(turn), {});
    ASSERT_FALSE(poses.poses.empty());
    expectDirection(upBefore(turn, poses.poses.front().rotation), {0.0f, 0.0f, -1.0f});
}

TEST(FindBuildPoses, LeavesTheMeshAlone) {
    const MeshKernel mesh = makeTable().kernel(someTurn());
    const UVector3<float> normal = mesh.getMesh()->Triangle(0)->N();
    const Matrix placement = mesh.getMatrix();
    findBuildPoses(mesh, {});
    EXPECT_EQ(mesh.getMatrix(), placement);
    EXPECT_EQ(mesh.getMesh()->Triangle(0)->N(), normal);
}

}  // namespace

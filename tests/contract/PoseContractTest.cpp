#include <gtest/gtest.h>

#include "BuildPose.h"
#include "HostMesh.h"
#include "TeskDebug/Exception.h"

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::PoseGoal;

TEST(PoseContract, TheNamedGoalsAreWhatTheHeaderSays) {
    const PoseGoal balanced = PoseGoal::balanced();
    EXPECT_EQ(balanced.overhangAngleDeg, 55.0f);
    EXPECT_EQ(balanced.supportVolumeCost, 0.15f);
    EXPECT_EQ(balanced.overhangAreaCost, 0.5f);
    EXPECT_EQ(balanced.heightCost, 15.0f);
    EXPECT_EQ(balanced.leastContactArea, 0.0f);
    EXPECT_TRUE(balanced.buildVolume.IsZeroLength());
    EXPECT_EQ(PoseGoal::leastSupport().heightCost, 8.0f);
    EXPECT_EQ(PoseGoal::leastSupport().supportVolumeCost, 0.15f);
}

TEST(PoseContract, AHostFindsMeasuresAndAppliesAPose) {
    MeshKernel mesh = hostBox(30.0f, 20.0f, 40.0f);
    const BuildPoses found = OptimizeOrient::findBuildPoses(mesh, PoseGoal::balanced());
    ASSERT_FALSE(found.poses.empty());
    const BuildPose& best = found.poses.front();
    mesh.setMatrix(mesh.getMatrix() * best.rotation);
    const BuildPose applied = OptimizeOrient::measurePose(mesh, PoseGoal::balanced(), {});
    EXPECT_EQ(applied.measures.height, best.measures.height);
    EXPECT_EQ(applied.measures.supportVolume, best.measures.supportVolume);
    EXPECT_EQ(applied.measures.footprintX, best.measures.footprintX);
    EXPECT_NEAR(applied.cost.total(), best.cost.total(), 1e-3f * best.cost.total());
}

TEST(PoseContract, AnAbortReachesTheHost) {
    const MeshKernel mesh = hostBox(30.0f, 20.0f, 40.0f);
    for (const int last : {3, 50, 91, 100}) {
        EXPECT_THROW(OptimizeOrient::findBuildPoses(mesh, {},
                                                    [&](int percent) {
                                                        if (percent < last) return;
                                                        throw Tesk::AbortException("enough");
                                                    }),
                     Tesk::AbortException);
    }
}

}  // namespace

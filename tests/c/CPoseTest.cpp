#include <gtest/gtest.h>

#include <limits>

#include "BuildPose.h"
#include "HostSide.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::PoseGoal;

constexpr int kMost = 12;

void expectSamePose(const tesk_pose& pose, const BuildPose& expected) {
    const OptimizeOrient::PoseMeasures& m = expected.measures;
    EXPECT_EQ(pose.struct_size, sizeof pose);
    EXPECT_TRUE(sameMatrix(pose.rotation, expected.rotation));
    EXPECT_TRUE(sameBits(pose.height, m.height));
    EXPECT_TRUE(sameBits(pose.footprint[0], m.footprintX));
    EXPECT_TRUE(sameBits(pose.footprint[1], m.footprintY));
    EXPECT_TRUE(sameBits(pose.support_volume, m.supportVolume));
    EXPECT_TRUE(sameBits(pose.overhang_area, m.overhangArea));
    EXPECT_TRUE(sameBits(pose.overhang_area_on_part, m.overhangAreaOnPart));
    EXPECT_TRUE(sameBits(pose.contact_area, m.contactArea));
    EXPECT_EQ(pose.contact_islands, m.contactIslands);
    EXPECT_TRUE(sameBits(pose.tilt_margin_deg, m.tiltMarginDeg));
    EXPECT_EQ(pose.lies_flat, m.liesFlat ? 1 : 0);
    EXPECT_EQ(pose.stands, m.stands ? 1 : 0);
    EXPECT_TRUE(sameBits(pose.support_volume_cost, expected.cost.supportVolume));
    EXPECT_TRUE(sameBits(pose.overhang_area_cost, expected.cost.overhangArea));
    EXPECT_TRUE(sameBits(pose.height_cost, expected.cost.height));
}

void expectSameSummary(const tesk_pose_summary& summary, const BuildPoses& expected) {
    EXPECT_EQ(summary.struct_size, sizeof summary);
    EXPECT_EQ(static_cast<std::size_t>(summary.pose_count), expected.poses.size());
    EXPECT_EQ(summary.none_stands, expected.noneStands ? 1 : 0);
    EXPECT_EQ(summary.kept_off, expected.passedOver.keptOff);
    EXPECT_EQ(summary.too_large, expected.passedOver.tooLarge);
    EXPECT_EQ(summary.little_contact, expected.passedOver.littleContact);
    EXPECT_EQ(summary.cannot_stand, expected.passedOver.cannotStand);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(sameBits(summary.nearest_misfit[i], expected.nearestMisfit[i]));
    }
}

/// Asks both interfaces.
void expectSamePoses(const Part& part, const tesk_goal* goal, const PoseGoal& sameGoal) {
    const UMatrix4<float> placement = placements()[2].matrix;
    const MeshHandle mesh = meshOf(part, placement);
    const BuildPoses expected = findBuildPoses(part.kernel(placement), sameGoal);
    tesk_pose poses[kMost] = {sized<tesk_pose>()};
    auto asItLies = sized<tesk_pose>();
    auto summary = sized<tesk_pose_summary>();
    const tesk_status status =
        tesk_find_poses(mesh.get(), goal, nullptr, poses, kMost, &asItLies, &summary);
    ASSERT_EQ(status, expected.poses.empty() ? TESK_NO_RESULT : TESK_OK) << lastError();
    expectSameSummary(summary, expected);
    expectSamePose(asItLies, expected.asItLies);
    for (std::size_t i = 0; i < expected.poses.size(); ++i) {
        expectSamePose(poses[i], expected.poses[i]);
        auto measured = sized<tesk_pose>();
        ASSERT_EQ(tesk_measure_pose(mesh.get(), goal, nullptr, poses[i].rotation, &measured),
                  TESK_OK);
        expectSamePose(measured,
                       measurePose(part.kernel(placement), sameGoal, expected.poses[i].rotation));
    }
}

TEST(CPoses, TheyHaveTheBitsOfTheCppInterface) {
    auto goal = sized<tesk_goal>();
    ASSERT_EQ(tesk_goal_init(&goal, TESK_GOAL_LEAST_SUPPORT), TESK_OK);
    for (const Part& part : {makeBracket(30, 40, 5, 12), makeTable(), makeRandomAssembly(5)}) {
        expectSamePoses(part, nullptr, PoseGoal::balanced());
        expectSamePoses(part, &goal, PoseGoal::leastSupport());
    }
}

TEST(CPoses, EveryFieldOfAGoalArrives) {
    tesk_keep_off rules[2] = {sized<tesk_keep_off>(), sized<tesk_keep_off>()};
    rules[0].direction[2] = -2.0f;
    rules[0].angle_deg = 20.0f;
    rules[1].direction[0] = 1.0f;
    rules[1].angle_deg = -1.0f;
    auto goal = sized<tesk_goal>();
    goal.overhang_angle_deg = 40.0f;
    goal.support_volume_cost = 0.3f;
    goal.overhang_area_cost = 0.7f;
    goal.height_cost = 2.0f;
    goal.build_volume[0] = 200.0f;
    goal.build_volume[1] = 100.0f;
    goal.build_volume[2] = 42.0f;
    goal.least_contact_area = 30.0f;
    goal.keep_off_count = 2;
    goal.keep_off = rules;
    PoseGoal same;
    same.overhangAngleDeg = 40.0f;
    same.supportVolumeCost = 0.3f;
    same.overhangAreaCost = 0.7f;
    same.heightCost = 2.0f;
    same.buildVolume = {200.0f, 100.0f, 42.0f};
    same.leastContactArea = 30.0f;
    same.keepOff = {{{0, 0, -2}, 20.0f}, {{1, 0, 0}, -1.0f}};
    expectSamePoses(makeBracket(50, 40, 5, 12), &goal, same);
    expectSamePoses(makeRandomAssembly(7), &goal, same);
}

TEST(CPoses, ANamedGoalIsSetWholly) {
    for (const int which : {TESK_GOAL_BALANCED, TESK_GOAL_LEAST_SUPPORT}) {
        const PoseGoal expected =
            which == TESK_GOAL_BALANCED ? PoseGoal::balanced() : PoseGoal::leastSupport();
        tesk_goal goal;
        std::memset(&goal, 0x5a, sizeof goal);
        goal.struct_size = sizeof goal;
        ASSERT_EQ(tesk_goal_init(&goal, which), TESK_OK);
        EXPECT_EQ(goal.overhang_angle_deg, expected.overhangAngleDeg);
        EXPECT_EQ(goal.support_volume_cost, expected.supportVolumeCost);
        EXPECT_EQ(goal.overhang_area_cost, expected.overhangAreaCost);
        EXPECT_EQ(goal.height_cost, expected.heightCost);
        EXPECT_EQ(goal.build_volume[0], 0.0f);
        EXPECT_EQ(goal.least_contact_area, 0.0f);
        EXPECT_EQ(goal.keep_off_count, 0);
        EXPECT_EQ(goal.keep_off, nullptr);
    }
}

TEST(CPoses, NoMoreThanTheCapacityIsWritten) {
    const MeshHandle mesh = meshOf(makeBracket(30, 40, 5, 12));
    auto summary = sized<tesk_pose_summary>();
    ASSERT_EQ(tesk_find_poses(mesh.get(), nullptr, nullptr, nullptr, 0, nullptr, &summary),
              TESK_OK);
    ASSERT_GT(summary.pose_count, 2);
    tesk_pose poses[3] = {sized<tesk_pose>(), {}, {}};
    poses[2].height = 77.0f;
    ASSERT_EQ(tesk_find_poses(mesh.get(), nullptr, nullptr, poses, 2, nullptr, nullptr), TESK_OK);
    EXPECT_GT(poses[1].height, 0.0f);
    EXPECT_EQ(poses[2].height, 77.0f);
}

TEST(CPoses, WhereNoneIsAllowedTheReasonIsTold) {
    auto goal = sized<tesk_goal>();
    ASSERT_EQ(tesk_goal_init(&goal, TESK_GOAL_BALANCED), TESK_OK);
    for (float& side : goal.build_volume) side = 3.0f;
    const Part part = makeBracket(30, 40, 5, 12);
    const MeshHandle mesh = meshOf(part);
    auto pose = sized<tesk_pose>();
    auto asItLies = sized<tesk_pose>();
    auto summary = sized<tesk_pose_summary>();
    EXPECT_EQ(tesk_find_poses(mesh.get(), &goal, nullptr, &pose, 1, &asItLies, &summary),
              TESK_NO_RESULT);
    EXPECT_EQ(lastError(), "no pose is within the goal's limits");
    EXPECT_GT(summary.too_large, 0);
    EXPECT_GT(summary.nearest_misfit[2], 0.0f);
    EXPECT_EQ(asItLies.height, 12.0f);
    EXPECT_EQ(pose.height, 0.0f);

    const MeshHandle empty = meshOf({});
    EXPECT_EQ(tesk_find_poses(empty.get(), nullptr, nullptr, &pose, 1, nullptr, nullptr),
              TESK_NO_RESULT);
    EXPECT_EQ(lastError(), "the mesh has no triangles, or its size is not finite");
}

}  // namespace

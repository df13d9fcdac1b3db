#include <gtest/gtest.h>

#include <cmath>

#include "BuildPose.h"
#include "PoseShapes.h"

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::measurePose;
using OptimizeOrient::PoseGoal;
using OptimizeOrient::PoseMeasures;
using Matrix = UMatrix4<float>;

constexpr float kHalfTurn = 3.14159265f;

PoseMeasures measured(const Part& part, const Matrix& rotation = {}) {
    return measurePose(part.kernel(), PoseGoal::balanced(), rotation).measures;
}

Matrix aboutY(float angleRad) {
    return Matrix::CreateRotateMatrix(angleRad, {0.0f, 1.0f, 0.0f});
}

/// Degrees of the angle whose tangent is given.
double degreesOfTangent(double tangent) {
    return std::atan(tangent) * 180.0 / 3.141592653589793;
}

TEST(PoseMeasures, ABoxNeedsNothingAndStandsOnItsWholeBase) {
    const PoseMeasures m = measured(makeBox({1, 2, 3}, {11, 22, 33}));
    EXPECT_FLOAT_EQ(m.height, 30.0f);
    EXPECT_FLOAT_EQ(m.footprintX, 10.0f);
    EXPECT_FLOAT_EQ(m.footprintY, 20.0f);
    EXPECT_EQ(m.supportVolume, 0.0f);
    EXPECT_EQ(m.overhangArea, 0.0f);
    EXPECT_EQ(m.overhangAreaOnPart, 0.0f);
    EXPECT_FLOAT_EQ(m.contactArea, 200.0f);
    EXPECT_EQ(m.contactIslands, 1);
    EXPECT_NEAR(m.tiltMarginDeg, degreesOfTangent(5.0 / 15.0), 1e-4);
    EXPECT_TRUE(m.liesFlat);
    EXPECT_TRUE(m.stands);
}

TEST(PoseMeasures, ABridgeHasItsDeckToSupportFromThePlate) {
    const PoseMeasures m = measured(makeBridge());
    EXPECT_FLOAT_EQ(m.overhangArea, 200.0f);
    EXPECT_EQ(m.overhangAreaOnPart, 0.0f);
    EXPECT_NEAR(m.supportVolume, 4000.0f, 0.05f * 4000.0f);
    EXPECT_FLOAT_EQ(m.contactArea, 200.0f);
    EXPECT_EQ(m.contactIslands, 2);
    // Legs of 4000 mm³ at 10 mm, a deck of 2000 at 22.5.
    EXPECT_NEAR(m.tiltMarginDeg, degreesOfTangent(5.0 / ((4000 * 10 + 2000 * 22.5) / 6000)), 1e-3);
    EXPECT_TRUE(m.stands);
}

TEST(PoseMeasures, ABridgeUpsideDownNeedsNothing) {
    const PoseMeasures m = measured(makeBridge(), aboutY(kHalfTurn));
    EXPECT_EQ(m.overhangArea, 0.0f);
    EXPECT_FLOAT_EQ(m.contactArea, 400.0f);
    EXPECT_EQ(m.contactIslands, 1);
    EXPECT_NEAR(m.supportVolume, 0.0f, 1e-2f);
}

TEST(PoseMeasures, ABridgeOnItsEndRestsOneLegOnTheOther) {
    const PoseMeasures m = measured(makeBridge(), aboutY(kHalfTurn / 2));
    EXPECT_NEAR(m.height, 40.0f, 1e-4f);
    // Of the upper leg, the side that looks at the lower one: 20 × 10.
    EXPECT_NEAR(m.overhangArea, 200.0f, 1e-2f);
    EXPECT_NEAR(m.overhangAreaOnPart, 200.0f, 1e-2f);
    EXPECT_NEAR(m.contactArea, 250.0f, 1e-2f);
}

TEST(PoseMeasures, ATableStandsOnFourIslands) {
    const Part table = makeTable();
    const PoseMeasures m = measured(table);
    EXPECT_EQ(m.contactIslands, 4);
    EXPECT_TRUE(m.stands);
    EXPECT_GT(m.overhangArea, 0.0f);
    EXPECT_EQ(measured(table, aboutY(kHalfTurn)).contactIslands, 1);
}

TEST(PoseMeasures, AnLOnItsLegHasTheOtherUnderneathNothing) {
    // Legs 30 along x and 20 along y, 5 thick, 10 wide along z.
    const Part bracket = makeBracket(30.0f, 20.0f, 5.0f, 10.0f);
    const PoseMeasures flat = measured(bracket);
    EXPECT_NEAR(flat.contactArea, 30.0f * 5.0f + 15.0f * 5.0f, 1e-3f);
    EXPECT_EQ(flat.overhangArea, 0.0f);
    // Turned by 90° about y, so that the leg along x points up or down.
    const PoseMeasures down = measured(bracket, aboutY(kHalfTurn / 2));
    const PoseMeasures up = measured(bracket, aboutY(-kHalfTurn / 2));
    EXPECT_NEAR(down.height, 30.0f, 1e-4f);
    EXPECT_NEAR(std::max(down.overhangArea, up.overhangArea), 15.0f * 10.0f, 1e-2f);
    EXPECT_NEAR(std::min(down.overhangArea, up.overhangArea), 0.0f, 1e-2f);
    EXPECT_NEAR(down.overhangAreaOnPart + up.overhangAreaOnPart, 0.0f, 1e-2f);
}

TEST(PoseMeasures, AConeStandsOnItsBaseAndNotOnItsTip) {
    const Part cone = makeCone(10.0f, 40.0f, 64);
    const PoseMeasures base = measured(cone);
    EXPECT_TRUE(base.stands);
    EXPECT_EQ(base.overhangArea, 0.0f);
    // A cone's centroid lies a quarter up; the 64-gon reaches in a little less than the circle.
    EXPECT_NEAR(base.tiltMarginDeg, degreesOfTangent(10.0 * std::cos(3.14159 / 64) / 10.0), 1e-2);
    const PoseMeasures tip = measured(cone, aboutY(kHalfTurn));
    EXPECT_FALSE(tip.stands);
    EXPECT_FALSE(tip.liesFlat);
    EXPECT_EQ(tip.overhangArea, 0.0f) << "its side is too steep to overhang at 55 degrees";
}

TEST(PoseMeasures, ACavitysCeilingRestsOnThePart) {
    const PoseMeasures m = measured(makeBoxWithCavity());
    EXPECT_FLOAT_EQ(m.overhangArea, 100.0f);
    EXPECT_FLOAT_EQ(m.overhangAreaOnPart, 100.0f);
    EXPECT_NEAR(m.supportVolume, 1000.0f, 60.0f);
    EXPECT_FLOAT_EQ(m.contactArea, 400.0f);
}

TEST(PoseMeasures, FortyFiveDegreesOverhangAt55AndNotAt40) {
    // The prism's slope looks down at 45°.
    PoseGoal goal;
    const MeshKernel prism = makePrism().kernel();
    EXPECT_GT(measurePose(prism, goal, {}).measures.overhangArea, 80.0f);
    goal.overhangAngleDeg = 40.0f;
    EXPECT_EQ(measurePose(prism, goal, {}).measures.overhangArea, 0.0f);
}

TEST(PoseMeasures, WhatLiesWithinTheGapOfThePlateIsContactAndNoOverhang) {
    Part part = makeBox({0, 0, 0}, {10, 10, 10});
    part.join(makeBox({20, 0, 0.15f}, {30, 10, 10}));
    part.join(makeBox({40, 0, 0.25f}, {50, 10, 10}));
    const PoseMeasures m = measured(part);
    EXPECT_FLOAT_EQ(m.contactArea, 200.0f);
    EXPECT_FLOAT_EQ(m.overhangArea, 100.0f);
    EXPECT_EQ(m.contactIslands, 2);
}

TEST(PoseMeasures, IslandsAreJoinedByPlaceWhereVerticesAreNotShared) {
    Part soup;
    const Part box = makeBox({0, 0, 0}, {10, 10, 10});
    for (const Part::Corners& t : box.triangles) {
        const std::int32_t a = soup.add(box.positions[static_cast<std::size_t>(t[0])]);
        const std::int32_t b = soup.add(box.positions[static_cast<std::size_t>(t[1])]);
        const std::int32_t c = soup.add(box.positions[static_cast<std::size_t>(t[2])]);
        soup.triangles.push_back({a, b, c});
    }
    EXPECT_EQ(measured(soup).contactIslands, 1);
}

TEST(PoseMeasures, ALeaningTowerDoesNotStand) {
    // A sheared box: its top hangs over by 40 on a base of 10.
    Part tower = makeBox({0, 0, 0}, {10, 10, 60});
    for (UPoint3<float>& p : tower.positions) p.x += p.z * 40.0f / 60.0f;
    const PoseMeasures m = measured(tower);
    EXPECT_LT(m.tiltMarginDeg, 0.0f);
    EXPECT_TRUE(m.liesFlat);
    EXPECT_FALSE(m.stands);
}

TEST(PoseMeasures, TheCostIsWhatTheGoalSays) {
    PoseGoal goal = PoseGoal::leastSupport();
    const BuildPose pose = measurePose(makeBridge().kernel(), goal, {});
    EXPECT_FLOAT_EQ(pose.cost.height, 8.0f * 25.0f);
    EXPECT_FLOAT_EQ(pose.cost.overhangArea, 0.5f * 200.0f);
    EXPECT_FLOAT_EQ(pose.cost.supportVolume, 0.15f * pose.measures.supportVolume);
    EXPECT_FLOAT_EQ(pose.cost.total(), pose.cost.supportFilament() + pose.cost.height);
}

TEST(PoseMeasures, AMirroringOrScalingPlacementCounts) {
    Matrix doubled;
    for (int i = 0; i < 3; ++i) doubled.at(i, i) = 2.0f;
    const MeshKernel big = makeBridge().kernel(doubled);
    const PoseMeasures m = measurePose(big, PoseGoal::balanced(), {}).measures;
    EXPECT_FLOAT_EQ(m.overhangArea, 800.0f);
    EXPECT_FLOAT_EQ(m.contactArea, 800.0f);
    EXPECT_NEAR(m.tiltMarginDeg, measured(makeBridge()).tiltMarginDeg, 1e-4);
}

}  // namespace

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "BuildPose.h"
#include "PoseShapes.h"

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::findBuildPoses;

BuildPoses found(const Part& part) {
    return findBuildPoses(part.kernel(), {});
}

/// Whatever the mesh is, what is listed is in order and finite, and says whether it stands.
void expectSound(const BuildPoses& result) {
    EXPECT_LE(result.poses.size(), 12u);
    for (const BuildPose& pose : result.poses) {
        EXPECT_TRUE(std::isfinite(pose.cost.total()));
        EXPECT_EQ(pose.measures.stands, !result.noneStands);
        EXPECT_NEAR(upOfPose(pose.rotation).GetLength(), 1.0f, 1e-5f);
    }
}

TEST(UnusualMesh, NoTrianglesHaveNoPose) {
    for (const MeshKernel& mesh : {MeshKernel(), Part{{{1, 2, 3}}, {}}.kernel()}) {
        std::vector<int> reports;
        const BuildPoses result =
            findBuildPoses(mesh, {}, [&](int percent) { reports.push_back(percent); });
        EXPECT_TRUE(result.poses.empty());
        EXPECT_FALSE(result.noneStands);
        EXPECT_EQ(result.asItLies.cost.total(), 0.0f);
        EXPECT_EQ(reports, (std::vector<int>{3, 10, 90, 100}));
    }
}

TEST(UnusualMesh, ASingleTriangleLiesFlat) {
    const Part part = Part{{{0, 0, 0}, {30, 0, 10}, {0, 40, 5}}, {{0, 1, 2}}};
    const BuildPoses result = found(part);
    expectSound(result);
    ASSERT_FALSE(result.poses.empty());
    EXPECT_NEAR(result.poses.front().measures.height, 0.0f, 1e-3f);
}

TEST(UnusualMesh, AFlatSheetLiesFlat) {
    Part sheet = makeWavySheet(10, 50.0f);
    for (UPoint3<float>& p : sheet.positions) p.z = 0.0f;
    for (const bool isInsideOut : {false, true}) {
        const Part part = isInsideOut ? sheet.turnedInsideOut() : sheet;
        const BuildPoses result = found(part.placed(someTurn()));
        expectSound(result);
        ASSERT_FALSE(result.poses.empty());
        EXPECT_NEAR(result.poses.front().measures.height, 0.0f, 1e-3f);
    }
}

TEST(UnusualMesh, TrianglesWithoutAreaHaveADefinedAnswer) {
    expectSound(found(Part{{{0, 0, 0}, {1, 1, 1}, {2, 2, 2}}, {{0, 1, 2}}}));
    expectSound(found(Part{{{5, 5, 5}}, {{0, 0, 0}}}));
    expectSound(found(makeTable().withDegenerateTriangles()));
}

TEST(UnusualMesh, ASphereStandsOnNothingAndSaysSo) {
    const BuildPoses result = found(makeSphere(60.0f, 20'000));
    expectSound(result);
    ASSERT_FALSE(result.poses.empty());
    EXPECT_TRUE(result.noneStands);
    EXPECT_EQ(result.passedOver.cannotStand, 0);
}

TEST(UnusualMesh, PartsAboutAnAxisStandOnTheirEnds) {
    for (const Part& part : {makeCylinder(10.0f, 8.0f, 90), makeCone(20.0f, 15.0f, 90)}) {
        const BuildPoses result = found(part.placed(someTurn()));
        expectSound(result);
        ASSERT_FALSE(result.poses.empty());
        EXPECT_FALSE(result.noneStands);
        const UVector3<float> up = upOfPose(someTurn() * result.poses.front().rotation);
        EXPECT_GT(std::fabs(up.z), 0.9999f);
    }
}

TEST(UnusualMesh, OpenMeshesAndSoupsHaveADefinedAnswer) {
    expectSound(found(makeTable().withoutEvery(3)));
    expectSound(found(makeSphere(10.0f, 500).withoutEvery(2)));
    expectSound(found(makeSoup(200, 40.0f, 3)));
    expectSound(found(makeWavySheet(12, 40.0f)));
    expectSound(found(makeTable().turnedInsideOut()));
    expectSound(found(makeCopies(50)));
}

TEST(UnusualMesh, DeletedAndUnusedVerticesDoNotCountForTheHull) {
    Part part = makeBox({0, 0, 0}, {30, 20, 10});
    part.add({0, 0, -100});
    const MeshKernel mesh = part.kernel();
    mesh.getMesh()->Vertex(8)->SetD(true);
    const BuildPoses result = findBuildPoses(mesh, {});
    ASSERT_FALSE(result.poses.empty());
    EXPECT_TRUE(result.poses.front().rotation.isIdenticalMatrix());
    EXPECT_NEAR(result.poses.front().measures.height, 10.0f, 1e-4f);
}

TEST(UnusualMesh, CoordinatesThatAreNotFiniteHaveADefinedAnswer) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float odd : {std::nanf(""), kInfinity, -kInfinity, 3e38f}) {
        for (std::size_t vertex = 0; vertex < 8; vertex += 3) {
            Part part = makeBox({0, 0, 0}, {30, 20, 10});
            part.positions[vertex].x = odd;
            expectSound(found(part));
            part.positions[vertex] = {odd, odd, odd};
            expectSound(found(part));
        }
    }
}

TEST(UnusualMesh, TinyAndHugePartsHaveADefinedAnswer) {
    for (const float scale : {1e-20f, 1e-6f, 1e-3f, 1e4f, 1e9f, 1e15f}) {
        expectSound(found(makeTable().scaled(scale, scale, scale)));
    }
    expectSound(found(makeTable().moved(1e6f, -1e6f, 1e6f)));
}

}  // namespace

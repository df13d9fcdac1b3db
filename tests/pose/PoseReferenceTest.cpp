#include <gtest/gtest.h>

#include "BuildPose.h"
#include "PoseShapes.h"
#include "ReferenceShapes.h"
#include "plain/PlainPoseMeasures.h"
#include "shapes/SampleMeshes.h"
#include "tools/FloatBits.h"
#include "tools/TestSize.h"

namespace {

using OptimizeOrient::BuildPoses;
using OptimizeOrient::findBuildPoses;
using OptimizeOrient::measurePose;
using OptimizeOrient::PoseGoal;
using OptimizeOrient::PoseMeasures;
using Matrix = UMatrix4<float>;

void expectSameMeasures(const PoseMeasures& actual, const PoseMeasures& expected) {
    const auto expectSame = [](const char* what, float a, float b) {
        EXPECT_TRUE(sameBits(a, b)) << what << ": " << a << " and " << b;
    };
    expectSame("height", actual.height, expected.height);
    expectSame("footprint along x", actual.footprintX, expected.footprintX);
    expectSame("footprint along y", actual.footprintY, expected.footprintY);
    expectSame("support volume", actual.supportVolume, expected.supportVolume);
    expectSame("overhang area", actual.overhangArea, expected.overhangArea);
    expectSame("overhang on the part", actual.overhangAreaOnPart, expected.overhangAreaOnPart);
    expectSame("contact area", actual.contactArea, expected.contactArea);
    expectSame("tilt margin", actual.tiltMarginDeg, expected.tiltMarginDeg);
    EXPECT_EQ(actual.contactIslands, expected.contactIslands);
    EXPECT_EQ(actual.liesFlat, expected.liesFlat);
    EXPECT_EQ(actual.stands, expected.stands);
}

void expectAsPlain(const MeshKernel& mesh, const PoseGoal& goal, const Matrix& rotation,
                   PlainSearch search = PlainSearch::kTrianglesOfColumn) {
    expectSameMeasures(measurePose(mesh, goal, rotation).measures,
                       plainPoseMeasures(mesh, goal, rotation, search));
}

class PoseMeasuresOnShapes : public testing::TestWithParam<NamedPart> {};

TEST_P(PoseMeasuresOnShapes, AgreeWithThePlainVersionInEveryPlacement) {
    for (const Placement& placement : placements()) {
        SCOPED_TRACE(placement.name);
        const MeshKernel mesh = GetParam().part.kernel(placement.matrix);
        for (const float angleRad : {0.0f, 0.4f, 3.14159265f}) {
            expectAsPlain(mesh, {}, someTurn(angleRad));
        }
    }
}

TEST_P(PoseMeasuresOnShapes, OfThePosesFoundAgreeWithThePlainVersion) {
    const MeshKernel mesh = GetParam().part.kernel();
    for (const OptimizeOrient::BuildPose& pose : findBuildPoses(mesh, {}).poses) {
        expectSameMeasures(pose.measures, plainPoseMeasures(mesh, {}, pose.rotation,
                                                            PlainSearch::kTrianglesOfColumn));
    }
}

TEST_P(PoseMeasuresOnShapes, AgreeWithThePlainVersionAtOtherAngles) {
    const MeshKernel mesh = GetParam().part.kernel();
    for (const float angleDeg : {0.0f, 30.0f, 90.0f}) {
        PoseGoal goal;
        goal.overhangAngleDeg = angleDeg;
        expectAsPlain(mesh, goal, someTurn(0.9f));
    }
}

INSTANTIATE_TEST_SUITE_P(Reference, PoseMeasuresOnShapes, testing::ValuesIn(referenceShapes()),
                         [](const auto& shape) { return shape.param.name; });

TEST(PoseMeasuresOnSampleMeshes, AgreeWithThePlainVersion) {
    const std::vector<std::filesystem::path> files = sampleMeshes();
    if (files.empty()) GTEST_SKIP() << whyNoSampleMeshes();
    // The plain version tries every pair of facets.
    const std::size_t most = testsAreSmall() ? 1'000 : 15'000;
    for (const std::filesystem::path& file : files) {
        const std::optional<Part> part = readSampleMesh(file);
        if (!part || part->triangles.size() > most) continue;
        SCOPED_TRACE(file.filename().string());
        const MeshKernel mesh = part->kernel();
        const BuildPoses found = findBuildPoses(mesh, {});
        expectSameMeasures(found.asItLies.measures,
                           plainPoseMeasures(mesh, {}, {}, PlainSearch::kTrianglesOfColumn));
        if (found.poses.empty()) continue;
        expectAsPlain(mesh, {}, found.poses.front().rotation);
        expectAsPlain(mesh, {}, someTurn());
    }
}

}  // namespace

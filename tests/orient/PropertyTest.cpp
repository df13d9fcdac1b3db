// What holds for every part, tried on parts made at random from fixed seeds.
#include <gtest/gtest.h>

#include <cmath>

#include "CompareEvaluations.h"
#include "CompareRecords.h"
#include "plain/PlainCandidates.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/TestRandom.h"
#include "tools/TestSize.h"

using namespace Tesk::orient;

namespace {

using Direction = UVector3<float>;

class AnyPart : public testing::TestWithParam<std::uint64_t> {
 protected:
    AnyPart() : random(GetParam()) {
        part =
            GetParam() % 4 == 3 ? makeSoup(60, 9.0f, GetParam()) : makeRandomAssembly(GetParam());
        if (GetParam() % 3 == 1) part = part.withoutEvery(6);
    }

    Direction anyDirection() {
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        return Direction(x, y, random.in(-1.0f, 1.0f)).GetNormal();
    }

    std::vector<Direction> someDirections() {
        std::vector<Direction> directions = {{0, 0, 1}, {0, 0, -1}, {1, 0, 0}};
        for (int i = 0; i < 5; ++i) directions.push_back(anyDirection());
        return directions;
    }

    TestRandom random;
    Part part;
};

TEST_P(AnyPart, WeldingEqualVerticesChangesNoMeasure) {
    const MeshKernel apart = part.kernel();
    const MeshKernel welded = part.welded().kernel();
    for (const Direction& d : someDirections()) {
        EXPECT_TRUE(areSame(evaluated(apart, d, {}), evaluated(welded, d, {})));
    }
}

TEST_P(AnyPart, RenumberingVerticesChangesNoMeasure) {
    Part renumbered;
    renumbered.positions.assign(part.positions.rbegin(), part.positions.rend());
    const auto last = static_cast<std::int32_t>(part.positions.size()) - 1;
    for (const Part::Corners& c : part.triangles) {
        renumbered.triangles.push_back({last - c[0], last - c[1], last - c[2]});
    }
    for (const Direction& d : someDirections()) {
        EXPECT_TRUE(
            areSame(evaluated(part.kernel(), d, {}), evaluated(renumbered.kernel(), d, {})));
    }
}

TEST_P(AnyPart, MeasuresAreNeverNegativeAndTheBoxHoldsThePart) {
    const MeshKernel mesh = part.kernel();
    for (const Direction& d : someDirections()) {
        const PlainScores s = evaluated(mesh, d, {.baseHeight = 2.0f});
        EXPECT_GT(s.height, 0.0f);
        EXPECT_GE(s.supportVolume, 0.0f);
        EXPECT_GE(s.overhangArea, 0.0f);
        EXPECT_GE(s.projectedArea, 0.0f);
        const float baseArea = s.boxVolume / s.height;
        // Columns whose middle lies inside, each up to half a cell beyond the box on every side.
        EXPECT_LE(s.projectedArea, 1.25f * baseArea + 4.0f);
        // No drop is longer than the part with its base height; gaps between drops do not overlap.
        EXPECT_LE(s.supportVolume, 1.0001f * (s.height + 2.0f) * s.projectedArea);
    }
}

TEST_P(AnyPart, AWiderLimitNeverFindsLessSupport) {
    const MeshKernel mesh = part.kernel();
    for (const Direction& d : someDirections()) {
        PlainScores before{};
        for (const float limit : {0.0f, 20.0f, 45.0f, 60.0f, 90.0f}) {
            const PlainScores s = evaluated(mesh, d, {.overhangAngle = limit, .baseHeight = 1.0f});
            EXPECT_GE(s.supportVolume, before.supportVolume);
            EXPECT_GE(s.overhangArea, before.overhangArea);
            before = s;
        }
    }
}

TEST_P(AnyPart, AtALimitOfZeroNothingOverhangs) {
    const MeshKernel mesh = part.kernel();
    for (const Direction& d : someDirections()) {
        EXPECT_EQ(evaluated(mesh, d, {.overhangAngle = 0.0f}).overhangArea, 0.0f);
    }
}

TEST_P(AnyPart, WithEverySurfaceCountedSupportAndPartFillTheColumns) {
    // At 180° every triangle with a downward or upward normal overhangs, so the drops are all gaps.
    const MeshKernel mesh = part.kernel();
    const PlainScores all = evaluated(mesh, {0, 0, 1}, {.overhangAngle = 180.0f});
    const PlainScores down = evaluated(mesh, {0, 0, 1}, {.overhangAngle = 45.0f});
    EXPECT_EQ(all.projectedArea, down.projectedArea);
    EXPECT_GE(all.supportVolume, down.supportVolume);
}

TEST_P(AnyPart, TheBestRecordsHeightIsThatOfThePartTurnedByIt) {
    MeshKernel mesh = part.kernel();
    const CallResult result = calculated(mesh, {});
    for (const auto& record : result.orientations) {
        MeshKernel turned =
            part.kernel(UMatrix4<float>::CreateRotateMatrix(record.angle, record.axis));
        const UBox3<float>& box = turned.GetBox();
        EXPECT_NEAR(box.MaxZ() - box.MinZ(), record.height, 1e-4f * record.height);
        EXPECT_NEAR(box.Volume(), record.boxVolume, 1e-3f * record.boxVolume);
    }
}

TEST_P(AnyPart, DoublingAllWeightsKeepsTheRankingAndDoublesTheScores) {
    MeshKernel mesh = part.kernel();
    const CallResult once = calculated(mesh, {.supportAreaWeight = 1,
                                              .supportVolumeWeight = 3,
                                              .heightWeight = 2,
                                              .boxVolumeWeight = 5});
    const CallResult twice = calculated(mesh, {.supportAreaWeight = 2,
                                               .supportVolumeWeight = 6,
                                               .heightWeight = 4,
                                               .boxVolumeWeight = 10});
    for (std::size_t i = 0; i < once.orientations.size(); ++i) {
        EXPECT_EQ(2.0f * once.orientations[i].score, twice.orientations[i].score);
        EXPECT_EQ(once.orientations[i].axis, twice.orientations[i].axis);
    }
}

TEST_P(AnyPart, PlacingByTheMatrixEqualsPlacingTheVertices) {
    // Powers of two, so that no bit is lost either way; the normals of the mesh stay the same.
    UMatrix4<float> matrix;
    for (int i = 0; i < 3; ++i) matrix.at(i, i) = 4.0f;
    const MeshKernel placed = part.kernel(matrix);
    const MeshKernel moved = part.placed(matrix).kernel();
    for (const Direction& d : someDirections()) {
        const PlainScores a = evaluated(placed, d, {});
        const PlainScores b = evaluated(moved, d, {});
        EXPECT_NEAR(a.height, b.height, 1e-4f * b.height);
        EXPECT_NEAR(a.boxVolume, b.boxVolume, 1e-4f * b.boxVolume);
        EXPECT_NEAR(a.projectedArea, b.projectedArea, 0.02f * b.projectedArea + 1.0f);
    }
}

INSTANTIATE_TEST_SUITE_P(Property, AnyPart, testing::Range(std::uint64_t{1}, std::uint64_t{13}));

}  // namespace

#include "orient/evaluation/EvaluateOrient.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "CompareEvaluations.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

using namespace Tesk::orient;

namespace {

using Direction = UVector3<float>;

constexpr Direction kUp{0, 0, 1};
constexpr Direction kDown{0, 0, -1};

/// Known measures of a part in a direction, at base heights 0 and 5.
struct Known {
    const char* name;
    Part part;
    Direction direction;
    float height, boxVolume, overhangArea, projectedArea, supportVolumeAt0, supportVolumeAt5;
};

std::vector<Known> knownNumbers() {
    std::vector<Known> all;
    const Part cube = makeBox({0, 0, 0}, {1, 1, 1});
    for (const Direction& d : {Direction(1, 0, 0), Direction(0, 1, 0), kUp, Direction(-1, 0, 0),
                               Direction(0, -1, 0), kDown}) {
        all.push_back({"cube", cube, d, 1, 1, 98, 1.10277426f, 0, 5.51387119f});
    }
    const Part box = makeBox({0, 0, 0}, {2, 3, 4});
    for (const Direction& d : {kUp, kDown}) {
        all.push_back({"box on its end", box, d, 4, 24, 1800, 6.00004244f, 0, 29.9998283f});
    }
    for (const Direction& d : {Direction(1, 0, 0), Direction(-1, 0, 0)}) {
        all.push_back({"box on its side", box, d, 2, 24, 4608, 12, 0, 60});
    }
    all.push_back({"column with arm", makeColumnWithArm(), kUp, 8, 480, 30600, 60.0009918f,
                   288.001251f, 588.003052f});
    all.push_back({"prism", makePrism(), kUp, 10, 600, 0, 60.0009918f, 0, 0});
    for (const Direction& d : {Direction(0, 1, 0), Direction(0, -1, 0)}) {
        all.push_back(
            {"prism on its side", makePrism(), d, 6, 600, 28050, 50.5027962f, 0, 252.514709f});
    }
    return all;
}

void expectNear(float value, float expected, const char* what) {
    EXPECT_NEAR(value, expected, expected == 0.0f ? 1e-4f : 1e-5f * expected) << what;
}

/// A box whose lower face has a z of its own per corner cannot be had; a horizontal square can.
Part makeSquare(float size, float z) {
    Part part;
    part.add({0, 0, z});
    part.add({size, 0, z});
    part.add({size, size, z});
    part.add({0, size, z});
    part.triangles = {{0, 1, 2}, {0, 2, 3}};
    return part;
}

TEST(EvaluateOrient, KnownPartsHaveTheirKnownMeasures) {
    for (const Known& known : knownNumbers()) {
        SCOPED_TRACE(known.name);
        const MeshKernel mesh = known.part.kernel();
        const PlainScores at0 = evaluated(mesh, known.direction, {.baseHeight = 0.0f});
        const PlainScores at5 = evaluated(mesh, known.direction, {.baseHeight = 5.0f});
        for (const PlainScores& s : {at0, at5}) {
            expectNear(s.height, known.height, "height");
            expectNear(s.boxVolume, known.boxVolume, "boxVolume");
            expectNear(s.overhangArea, known.overhangArea, "overhangArea");
            expectNear(s.projectedArea, known.projectedArea, "projectedArea");
        }
        expectNear(at0.supportVolume, known.supportVolumeAt0, "supportVolume on the ground");
        expectNear(at5.supportVolume, known.supportVolumeAt5, "supportVolume at 5");
    }
}

TEST(EvaluateOrient, UpLeavesThePartAsItIsPlaced) {
    const auto turn = UMatrix4<float>::CreateRotateMatrix(0.4f, {1, 2, 3});
    MeshKernel mesh = makeTable().kernel(turn);
    const UBox3<float> box = mesh.GetBox();
    const PlainScores s = evaluated(mesh, kUp, {.baseHeight = -1.0f});
    // Moved to its centre and back, the part keeps its place but for rounding.
    EXPECT_NEAR(s.height, box.MaxZ() - box.MinZ(), 1e-5f);
    EXPECT_NEAR(s.boxVolume, box.Volume(), 1e-2f);
}

TEST(EvaluateOrient, DownTurnsThePartOver) {
    // Up, the arm at the top hangs over; upside down it lies on the ground.
    const MeshKernel mesh = makeColumnWithArm().kernel();
    EXPECT_GT(evaluated(mesh, kUp, {}).supportVolume, 200.0f);
    const PlainScores over = evaluated(mesh, kDown, {});
    EXPECT_NEAR(over.supportVolume, 0.0f, 1e-3f);
    EXPECT_NEAR(over.height, 8.0f, 1e-5f);
}

TEST(EvaluateOrient, TheDirectionTurnsUpAndNotDown) {
    // The arm points along +x: with +x up it stands in the air beside the column's foot.
    const MeshKernel mesh = makeColumnWithArm().kernel();
    const PlainScores lying = evaluated(mesh, {-1, 0, 0}, {});
    const PlainScores standing = evaluated(mesh, {1, 0, 0}, {});
    EXPECT_NEAR(lying.height, 10.0f, 1e-4f);
    EXPECT_NEAR(standing.height, 10.0f, 1e-4f);
    EXPECT_NEAR(standing.supportVolume, 0.0f, 1e-3f);
    EXPECT_NEAR(lying.supportVolume, 8.0f * 36.0f, 0.1f * 8.0f * 36.0f);
}

TEST(EvaluateOrient, TheReservedScoreIsAlwaysZero) {
    for (const Part& part : {makeTable(), makeSphere(3.0f, 200), Part()}) {
        const MeshKernel mesh = part.kernel();
        for (const Direction& d : {kUp, kDown, Direction(1, 1, 1)}) {
            EXPECT_EQ(evaluated(mesh, d, {}).reservedScore, 0.0f);
            EXPECT_EQ(evaluated(mesh, d, {.computeSupport = false}).reservedScore, 0.0f);
        }
    }
}

TEST(EvaluateOrient, WithoutSupportSamplingTheSupportMeasuresStayZero) {
    const MeshKernel mesh = makeTable().kernel();
    const PlainScores with = evaluated(mesh, kUp, {});
    const PlainScores without = evaluated(mesh, kUp, {.computeSupport = false});
    EXPECT_EQ(without.supportVolume, 0.0f);
    EXPECT_EQ(without.overhangArea, 0.0f);
    EXPECT_EQ(without.projectedArea, 0.0f);
    EXPECT_EQ(without.height, with.height);
    EXPECT_EQ(without.boxVolume, with.boxVolume);
    EXPECT_GT(with.supportVolume, 0.0f);
}

TEST(EvaluateOrient, ABaseHeightOfMinusOneLeavesThePartWhereTheTurnPutIt) {
    // [0,2]×[0,3]×[3,7] turned upside down about its centre stays at z 3 to 7.
    const MeshKernel mesh = makeBox({0, 0, 3}, {2, 3, 7}).kernel();
    const PlainScores kept = evaluated(mesh, kUp, {.baseHeight = -1.0f});
    EXPECT_NEAR(kept.supportVolume, 3.0f * kept.projectedArea, 1e-3f);
    const PlainScores below = evaluated(mesh, kUp, {.baseHeight = -2.0f});
    EXPECT_TRUE(areSame(kept, below));
    const PlainScores lifted = evaluated(mesh, kUp, {.baseHeight = -0.5f});
    EXPECT_NEAR(lifted.supportVolume, 0.5f * lifted.projectedArea, 1e-3f);
}

TEST(EvaluateOrient, TheLiftGoesIntoTheBoxVolume) {
    // Lifting rounds: at z near 0 the height comes out more exactly than at 1e6.
    const MeshKernel mesh = makeBox({0, 0, 1e6f}, {1, 1, 1e6f + 0.3f}).kernel();
    const float lifted = evaluated(mesh, kUp, {.baseHeight = 16384.0f}).boxVolume;
    const float kept = evaluated(mesh, kUp, {.baseHeight = -1.0f}).boxVolume;
    EXPECT_TRUE(sameBits(lifted, evaluated(mesh, kUp, {.baseHeight = 16384.0f}).height));
    EXPECT_TRUE(sameBits(kept, evaluated(mesh, kUp, {.baseHeight = -1.0f}).height));
}

TEST(EvaluateOrient, GroundHitsMayLieAboveThePartAndCountAsDistances) {
    // Left where it is, the part reaches from −7 to −3: 7 from the ground to its lower face.
    const MeshKernel mesh = makeBox({0, 0, -7}, {2, 3, -3}).kernel();
    const PlainScores s = evaluated(mesh, kUp, {.baseHeight = -1.0f});
    EXPECT_NEAR(s.supportVolume, 7.0f * s.projectedArea, 1e-3f);
}

TEST(EvaluateOrient, AColumnThatMeetsOnlyOneTriangleCountsForNothing) {
    // A single triangle, whose edges pass between the sample points.
    Part part;
    part.add({0.013f, 0.017f, 1});
    part.add({9.731f, 0.377f, 1});
    part.add({0.511f, 9.817f, 1});
    part.triangles = {{0, 2, 1}};
    const PlainScores s = evaluated(part.kernel(), kUp, {.baseHeight = 5.0f});
    EXPECT_EQ(s.projectedArea, 0.0f);
    EXPECT_EQ(s.overhangArea, 0.0f);
    EXPECT_EQ(s.supportVolume, 0.0f);
}

TEST(EvaluateOrient, AColumnWithAnOddNumberOfHeightsCountsForItsFootprintOnly) {
    // Three horizontal squares above each other, all facing down.
    Part part;
    for (const float z : {1.0f, 2.0f, 3.0f}) part.join(makeSquare(8.0f, z).turnedInsideOut());
    const PlainScores s = evaluated(part.kernel(), kUp, {.baseHeight = 5.0f});
    EXPECT_NEAR(s.projectedArea, 64.0f, 4.0f);
    EXPECT_EQ(s.supportVolume, 0.0f);
    EXPECT_EQ(s.overhangArea, 0.0f);
}

TEST(EvaluateOrient, TwoTrianglesAtOneHeightAreOneCrossing) {
    // The same square twice: two triangles per column, one height, so an odd number.
    Part part = makeSquare(8.0f, 1.0f).turnedInsideOut();
    part.join(makeSquare(8.0f, 1.0f).turnedInsideOut());
    const PlainScores s = evaluated(part.kernel(), kUp, {.baseHeight = 5.0f});
    EXPECT_NEAR(s.projectedArea, 64.0f, 4.0f);
    EXPECT_EQ(s.supportVolume, 0.0f);
}

TEST(EvaluateOrient, OfTrianglesAtOneHeightTheFirstInTheMeshCounts) {
    // Facing up or down decides whether the lower crossing is an overhang.
    const Part up = makeSquare(8.0f, 1.0f);
    const Part down = up.turnedInsideOut();
    const Part roof = makeSquare(8.0f, 2.0f);
    const auto overhangOf = [&](const Part& first, const Part& second) {
        Part part = first;
        part.join(second).join(roof);
        return evaluated(part.kernel(), kUp, {}).overhangArea;
    };
    EXPECT_EQ(overhangOf(up, down), 0.0f);
    EXPECT_GT(overhangOf(down, up), 0.0f);
}

TEST(EvaluateOrient, VerticalTrianglesHaveNoCrossing) {
    // The walls of a box are vertical: only floor and ceiling count, also for a point on a wall.
    Part walls = makeBox({0, 0, 0}, {4, 4, 4});
    walls.triangles.erase(walls.triangles.begin(), walls.triangles.begin() + 4);
    const PlainScores s = evaluated(walls.kernel(), kUp, {.baseHeight = 5.0f});
    EXPECT_EQ(s.supportVolume, 0.0f);
    EXPECT_EQ(s.overhangArea, 0.0f);
}

TEST(EvaluateOrient, BothWindingsAreMet) {
    const MeshKernel mesh = makeTable().kernel();
    const MeshKernel inverted = makeTable().turnedInsideOut().kernel();
    EXPECT_EQ(evaluated(mesh, kUp, {}).projectedArea, evaluated(inverted, kUp, {}).projectedArea);
    EXPECT_EQ(evaluated(inverted, kUp, {}).supportVolume, 0.0f);
}

TEST(EvaluateOrient, OnlySurfacesSteeperThanTheLimitOverhang) {
    // A ramp's lower face, tilted by the given angle from the vertical plane's normal.
    const auto overhang = [](float tiltDeg, float limitDeg) {
        const float tilt = tiltDeg * std::numbers::pi_v<float> / 180.0f;
        const auto turn = UMatrix4<float>::CreateRotateMatrix(tilt, {1, 0, 0});
        const MeshKernel mesh = makeBox({0, 0, 0}, {6, 6, 1}).kernel(turn);
        return evaluated(mesh, kUp, {.overhangAngle = limitDeg}).overhangArea;
    };
    EXPECT_GT(overhang(40.0f, 45.0f), 0.0f);
    EXPECT_EQ(overhang(40.0f, 39.0f), 0.0f);
    EXPECT_GT(overhang(50.0f, 51.0f), 0.0f);
    EXPECT_GT(overhang(0.0f, 1.0f), 0.0f);
    EXPECT_EQ(overhang(0.0f, 0.0f), 0.0f);
}

TEST(EvaluateOrient, AnOverhangingTriangleCountsOnceForEveryColumn) {
    // Lower face of the cube: two triangles of area 1/2 in 14 × 14 columns.
    const MeshKernel cube = makeBox({0, 0, 0}, {1, 1, 1}).kernel();
    EXPECT_EQ(evaluated(cube, kUp, {}).overhangArea, 14 * 14 * 0.5f);
}

TEST(EvaluateOrient, AreasComeFromTheListByTheTrianglesPlace) {
    const Part part = makeTable();
    const MeshKernel mesh = part.kernel();
    std::vector<float> areas(part.triangles.size(), 0.0f);
    areas[0] = 2.0f;  // half of the plate's lower face
    areas[1] = 2.0f;
    const PlainScores s = evaluated(areas, mesh, kUp, {});
    const PlainScores real = evaluated(mesh, kUp, {});
    EXPECT_GT(s.overhangArea, 0.0f);
    EXPECT_NE(s.overhangArea, real.overhangArea);
    EXPECT_EQ(s.supportVolume, real.supportVolume);
}

TEST(EvaluateOrient, DeletedVerticesDoNotCountForTheBox) {
    Part part = makeBox({0, 0, 0}, {2, 3, 4});
    const std::int32_t far = part.add({50, 60, 70});
    MeshKernel mesh = part.kernel();
    EXPECT_GT(evaluated(mesh, kUp, {}).height, 60.0f);
    mesh.getMesh()->Vertex(far)->SetD(true);
    EXPECT_EQ(evaluated(mesh, kUp, {}).height, 4.0f);
    EXPECT_EQ(evaluated(mesh, kUp, {}).boxVolume, 24.0f);
}

TEST(EvaluateOrient, TheLengthOfTheDirectionDoesNotMatterBesideItsAxis) {
    const MeshKernel mesh = makeBracket(9, 7, 1, 4).kernel();
    const Question question;
    EXPECT_TRUE(
        areSame(evaluated(mesh, {4, 0, 0}, question), evaluated(mesh, {0.25f, 0, 0}, question)));
}

TEST(EvaluateOrient, OneDirectionKnowsNothingOfThoseBesideAndBeforeIt) {
    const std::vector<Direction> directions = {
        kUp, {1, 2, 3}, kDown, {0, 1, 1}, {1, 0, 0}, {-3, 1, 1}, kUp, {5, -1, 2}, kUp};
    for (const Part& part : {makeSphere(30.0f, 2000), makeBox({0, 0, 0}, {1, 1, 1}), makeTable(),
                             makeBox({0, 0, 0}, {900, 1, 1}), Part(), makeColumnWithArm()}) {
        const MeshKernel mesh = part.kernel();
        const std::vector<float> areas = plainAreas(mesh);
        const FlatMesh flat = flatten(*mesh.getMesh(), mesh.getMatrix());
        OrientEvaluator evaluator(areas, flat, 45.0f, /*computeSupport=*/true, 0.0f);
        for (int repeat = 0; repeat < 2; ++repeat) {
            const std::vector<PlainScores> scores = evaluatedTogether(directions, evaluator);
            for (std::size_t i = 0; i < directions.size(); ++i) {
                EXPECT_TRUE(areSame(scores[i], evaluated(mesh, directions[i], {})));
            }
        }
    }
}

}  // namespace

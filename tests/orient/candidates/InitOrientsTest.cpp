#include "orient/candidates/InitOrients.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "OrientOptimizer.h"
#include "orient/candidates/DirectionKey.h"
#include "orient/candidates/RandomSource.h"
#include "plain/PlainCandidates.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

using namespace Tesk::orient;

namespace {

using Direction = UVector3<float>;

constexpr float kS = 0.70710677f;
const std::vector<Direction> kBase = {
    {0, 0, -1},   {kS, 0, -kS}, {0, kS, -kS}, {-kS, 0, -kS}, {0, -kS, -kS}, {1, 0, 0},
    {kS, kS, 0},  {0, 1, 0},    {-kS, kS, 0}, {-1, 0, 0},    {-kS, -kS, 0}, {0, -1, 0},
    {kS, -kS, 0}, {kS, 0, kS},  {0, kS, kS},  {-kS, 0, kS},  {0, -kS, kS},  {0, 0, 1}};

std::vector<Direction> candidatesOf(MeshKernel& mesh, std::uint32_t seed = 1) {
    OptimizeOrient::seedRandom(seed);
    return initOrients(&mesh);
}

std::vector<Direction> candidatesOf(const Part& part) {
    MeshKernel mesh = part.kernel();
    return candidatesOf(mesh);
}

bool contains(const std::vector<Direction>& list, const Direction& d) {
    return std::find(list.begin(), list.end(), d) != list.end();
}

/// A triangle on a plane that is tilted by `degrees` from the horizontal, about the y axis.
void addTilted(Part& part, float degrees) {
    const double angle = static_cast<double>(degrees) * 3.141592653589793 / 180.0;
    const auto c = static_cast<float>(Tesk::cosine(angle));
    const auto s = static_cast<float>(Tesk::sine(angle));
    const std::int32_t a = part.add({0, 0, 0});
    part.add({c, 0, -s});
    part.add({0, 1, 0});
    part.triangles.push_back({a, a + 1, a + 2});
}

/// The normals that the mesh holds for its triangles, refreshed.
Direction normalOf(MeshKernel& mesh, std::int32_t triangle) {
    mesh.updateTriangleNormal();
    return mesh.getMesh()->Triangle(triangle)->N();
}

TEST(InitOrients, AMeshWithoutTrianglesYieldsTheEighteenFixedDirectionsInOrder) {
    EXPECT_EQ(candidatesOf(Part()), kBase);
    EXPECT_EQ(candidatesOf(Part().withUnusedVertices(5)), kBase);
}

TEST(InitOrients, WithoutTrianglesNoRandomNumberIsDrawn) {
    MeshKernel mesh = Part().withUnusedVertices(5).kernel();
    candidatesOf(mesh, 1);
    EXPECT_EQ(nextRandom(), 41);
}

TEST(InitOrients, TheFixedDirectionsLieInEighteenCells) {
    std::set<std::int64_t> cells;
    for (const Direction& d : kBase) cells.insert(directionKey(d));
    EXPECT_EQ(cells.size(), 18u);
}

TEST(InitOrients, TheFixedDirectionsAlwaysComeFirst) {
    for (const Part& part : {makeTable(), makeSphere(4.0f, 1200), makeSoup(300, 5.0f, 1),
                             makeCopies(50), Part().withDegenerateTriangles()}) {
        const std::vector<Direction> candidates = candidatesOf(part);
        ASSERT_GE(candidates.size(), 18u);
        EXPECT_TRUE(std::equal(kBase.begin(), kBase.end(), candidates.begin()));
    }
}

TEST(InitOrients, ThereAreAtMostFiftyEightUnitVectorsInCellsOfTheirOwn) {
    for (const Part& part :
         {makeSphere(4.0f, 5000), makeSoup(2000, 5.0f, 1), makeWavySheet(30, 9.0f)}) {
        const std::vector<Direction> candidates = candidatesOf(part);
        EXPECT_LE(candidates.size(), 58u);
        EXPECT_GT(candidates.size(), 30u);
        std::set<std::int64_t> cells;
        for (const Direction& d : candidates) {
            EXPECT_NEAR(d.GetLength(), 1.0f, 1e-6f);
            EXPECT_TRUE(cells.insert(directionKey(d)).second);
        }
    }
}

TEST(InitOrients, EachMeshNormalIsFollowedByItsOpposite) {
    Part part;
    addTilted(part, 20.0f);
    MeshKernel mesh = part.kernel();
    const Direction n = normalOf(mesh, 0);
    const std::vector<Direction> candidates = candidatesOf(mesh);
    ASSERT_GE(candidates.size(), 20u);
    EXPECT_EQ(candidates[18], n);
    EXPECT_EQ(candidates[19], Direction() - n);
}

TEST(InitOrients, AnOppositeHasNoNegativeZeros) {
    Part part;
    addTilted(part, 20.0f);
    const std::vector<Direction> candidates = candidatesOf(part);
    ASSERT_EQ(candidates[18].y, 0.0f);
    EXPECT_FALSE(std::signbit(candidates[19].y));
}

TEST(InitOrients, MoreTrianglesGoBeforeFewerWhateverTheirArea) {
    Part part;
    addTilted(part, 20.0f);
    part = part.scaled(100.0f, 100.0f, 100.0f);
    for (int i = 0; i < 3; ++i) addTilted(part, 30.0f);
    MeshKernel mesh = part.kernel();
    const Direction often = normalOf(mesh, 1);
    const Direction once = normalOf(mesh, 0);
    const std::vector<Direction> candidates = candidatesOf(mesh);
    EXPECT_EQ(candidates[18], often);
    EXPECT_EQ(candidates[20], once);
}

TEST(InitOrients, EquallyFrequentNormalsGoByTheirTriangle) {
    Part part;
    for (const float degrees : {70.0f, 20.0f, 60.0f, 30.0f}) addTilted(part, degrees);
    MeshKernel mesh = part.kernel();
    const std::vector<Direction> candidates = candidatesOf(mesh);
    for (std::int32_t t = 0; t < 4; ++t) {
        EXPECT_EQ(candidates[static_cast<std::size_t>(18 + 2 * t)], normalOf(mesh, t));
    }
}

TEST(InitOrients, TheLastTriangleOfACellStandsForIt) {
    Part part;
    for (const float degrees : {19.5f, 19.8f, 19.4f, 19.6f}) addTilted(part, degrees);
    MeshKernel mesh = part.kernel();
    std::set<std::int64_t> cells;
    for (std::int32_t t = 0; t < 4; ++t) cells.insert(directionKey(normalOf(mesh, t)));
    ASSERT_EQ(cells.size(), 1u);
    const std::vector<Direction> candidates = candidatesOf(mesh);
    EXPECT_EQ(candidates[18], normalOf(mesh, 3));
    for (std::int32_t t = 0; t < 3; ++t) EXPECT_FALSE(contains(candidates, normalOf(mesh, t)));
}

TEST(InitOrients, OnlyTheTenMostFrequentNormalsAreTaken) {
    Part part;
    // Eleven cells, the first of which has one triangle and the others two.
    for (int i = 0; i < 11; ++i) {
        for (int times = 0; times < (i == 0 ? 1 : 2); ++times) {
            addTilted(part, 5.0f + 7.5f * static_cast<float>(i));
        }
    }
    MeshKernel mesh = part.kernel();
    const Direction rare = normalOf(mesh, 0);
    const std::vector<Direction> candidates = candidatesOf(mesh);
    ASSERT_GE(candidates.size(), 38u);
    EXPECT_FALSE(std::count(candidates.begin(), candidates.begin() + 38, rare));
    for (std::int32_t t = 1; t < 21; t += 2) {
        EXPECT_EQ(candidates[static_cast<std::size_t>(18 + t - 1)], normalOf(mesh, t));
    }
}

TEST(InitOrients, EveryTriangleIsSampledMoreOftenTheFewerThereAre) {
    const std::vector<std::pair<int, int>> samplesByCount = {
        {1, 30},   {999, 30}, {1000, 15}, {1999, 15}, {2000, 5},  {4999, 5},
        {5000, 3}, {9999, 3}, {10000, 2}, {19999, 2}, {20000, 1}, {20001, 1}};
    for (const auto& [triangles, samples] : samplesByCount) {
        MeshKernel mesh = makeCopies(triangles).kernel();
        candidatesOf(mesh, 17);
        PlainRandom plain(17);
        for (int i = 0; i < 2 * triangles * samples; ++i) plain.next();
        EXPECT_EQ(nextRandom(), plain.next()) << triangles << " triangles";
        EXPECT_EQ(nextRandom(), plain.next()) << triangles << " triangles";
    }
}

TEST(InitOrients, CollinearPlanesAreDropped) {
    // Every vertex on one line: no triangle and no plane has a normal.
    Part part;
    for (int i = 0; i < 30; ++i) {
        const auto f = static_cast<float>(i);
        part.add({f, 2.0f * f, -f});
    }
    for (std::int32_t i = 0; i + 2 < 30; ++i) part.triangles.push_back({i, i + 1, i + 2});
    EXPECT_EQ(candidatesOf(part), kBase);
}

TEST(InitOrients, ATriangleWithoutAreaAddsNoDirection) {
    Part part;
    for (int i = 0; i < 20; ++i) part = part.withDegenerateTriangles();
    addTilted(part, 20.0f);
    for (const Direction& d : candidatesOf(part)) EXPECT_NEAR(d.GetLength(), 1.0f, 1e-6f);
}

TEST(InitOrients, VerticesThatAreNotFiniteAddNoDirection) {
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float bad : {std::nanf(""), infinity, -infinity, 3e38f}) {
        for (const std::size_t every : {100u, 5u, 1u}) {
            Part part = makeTable();
            for (std::size_t i = 0; i < part.positions.size(); i += every) {
                part.positions[i].y = bad;
            }
            for (const Direction& d : candidatesOf(part)) {
                EXPECT_NEAR(d.GetLength(), 1.0f, 1e-6f) << bad;
            }
        }
    }
}

TEST(InitOrients, SampledPlanesAreTakenWhereTheMatrixPlacesThemAndTriangleNormalsAreNot) {
    // One triangle, in the xy plane tilted by 20°; a random plane through it has the same normal.
    Part part;
    addTilted(part, 20.0f);
    const auto turn = UMatrix4<float>::CreateRotateMatrix(0.6f, {1.0f, 0.0f, 0.0f});
    MeshKernel mesh = part.kernel(turn);
    const std::vector<Direction> candidates = candidatesOf(mesh);
    EXPECT_EQ(candidates[18], normalOf(mesh, 0));
    const Part placed = part.placed(turn);
    const Direction placedNormal =
        ((placed.positions[1] - placed.positions[0]) * (placed.positions[2] - placed.positions[0]))
            .GetNormal();
    const auto isPlacedNormal = [&](const Direction& d) {
        return std::fabs(d | placedNormal) > 0.99999f;
    };
    EXPECT_EQ(std::count_if(candidates.begin() + 20, candidates.end(), isPlacedNormal), 2);
}

TEST(InitOrients, AnIdentityMatrixLeavesSampledPlanesAlone) {
    // Under a matrix that is almost the identity, sampled normals change in their last bits.
    const Part part = makeSoup(40, 5.0f, 8);
    MeshKernel plain = part.kernel();
    MeshKernel same = part.kernel(UMatrix4<float>());
    EXPECT_EQ(candidatesOf(plain), candidatesOf(same));
    MeshKernel tilted = part.kernel(UMatrix4<float>::CreateRotateMatrix(1e-3f, {1, 1, 1}));
    EXPECT_NE(candidatesOf(plain), candidatesOf(tilted));
}

TEST(InitOrients, OtherRandomNumbersGiveOtherPlanes) {
    MeshKernel mesh = makeSoup(100, 5.0f, 2).kernel();
    EXPECT_EQ(candidatesOf(mesh, 1), candidatesOf(mesh, 1));
    EXPECT_NE(candidatesOf(mesh, 1), candidatesOf(mesh, 2));
}

TEST(InitOrients, TheMeshsTriangleNormalsAreRefreshed) {
    MeshKernel mesh = makeBox({0, 0, 0}, {1, 1, 1}).kernel();
    mesh.getMesh()->Triangle(0)->SetN({9, 9, 9});
    candidatesOf(mesh);
    EXPECT_EQ(mesh.getMesh()->Triangle(0)->N(), Direction(0, 0, -1));
}

}  // namespace

#include <gtest/gtest.h>

#include <cmath>

#include "Shapes.h"
#include "TestRandom.h"
#include "TriangleMesh.h"
#include "plate/Bodies.h"
#include "plate/Footprints.h"
#include "plate/ItemTurn.h"
#include "plate/Polar.h"

namespace {

using App::PolarParts;
using Matrix = UMatrix4<double>;

constexpr double kPi = 3.14159265358979;

Matrix turnAbout(const UVector3<double>& axis, double degrees) {
    return Matrix::CreateRotateMatrix(degrees * kPi / 180.0, axis);
}

Matrix scaling(double x, double y, double z) {
    Matrix m;
    m.at(0, 0) = x;
    m.at(1, 1) = y;
    m.at(2, 2) = z;
    return m;
}

double largestDifference(const Matrix& a, const Matrix& b) {
    double largest = 0.0;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            largest = std::max(largest, std::fabs(a.at(row, col) - b.at(row, col)));
        }
    }
    return largest;
}

Matrix randomMap(TestRandom& random) {
    Matrix m;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col)
            m.at(row, col) = static_cast<double>(random.in(-2.0f, 2.0f));
    }
    return m;
}

TEST(PolarPartsOf, RandomMapsAreAStretchAndThenARotation) {
    TestRandom random(11);
    int tested = 0;
    for (int i = 0; i < 2000; ++i) {
        const Matrix map = randomMap(random);
        const auto parts = App::polarPartsOf(map);
        if (!parts) continue;
        ++tested;
        EXPECT_LT(largestDifference(parts->stretch * parts->rotation, map), 1e-12);
        EXPECT_LT(largestDifference(parts->stretch, App::transposed(parts->stretch)), 1e-15);
        EXPECT_LT(largestDifference(App::transposed(parts->rotation) * parts->rotation, {}), 1e-13);
        EXPECT_NEAR(App::determinantOf(parts->rotation), 1.0, 1e-12);
        // Of one sign: leading minors say it.
        const double sign = App::determinantOf(map) < 0.0 ? -1.0 : 1.0;
        const Matrix& s = parts->stretch;
        EXPECT_GT(sign * s.at(0, 0), 0.0);
        EXPECT_GT(s.at(0, 0) * s.at(1, 1) - s.at(0, 1) * s.at(1, 0), 0.0);
        EXPECT_GT(sign * App::determinantOf(s), 0.0);
    }
    EXPECT_GT(tested, 1900);
}

TEST(PolarPartsOf, AMirroredRotationIsMinusTheIdentityAndARotation) {
    const Matrix turn = turnAbout({1, 2, 3}, 77.0);
    const auto parts = App::polarPartsOf(scaling(-1, 1, 1) * turn);
    ASSERT_TRUE(parts);
    EXPECT_EQ(App::snapped(parts->stretch), scaling(-1, -1, -1));
    EXPECT_LT(largestDifference(parts->rotation, scaling(1, -1, -1) * turn), 1e-14);
}

TEST(PolarPartsOf, AStretchOfAnySizeIsFound) {
    for (const double size : {1e-30, 1e-3, 1.0, 1e6, 1e30}) {
        const Matrix stretch = scaling(size, 2.0 * size, 5.0 * size);
        const auto parts = App::polarPartsOf(stretch * turnAbout({0, 1, 1}, 200.0));
        ASSERT_TRUE(parts);
        EXPECT_LT(largestDifference(parts->stretch, stretch), 1e-13 * size);
    }
}

TEST(PolarPartsOf, AMapThatFlattensHasNone) {
    EXPECT_FALSE(App::polarPartsOf(scaling(1, 1, 0)));
    EXPECT_FALSE(App::polarPartsOf(scaling(0, 0, 0)));
    EXPECT_FALSE(App::polarPartsOf(scaling(1, 1, 1e-9) * turnAbout({1, 1, 1}, 30.0)));
    EXPECT_FALSE(App::polarPartsOf(scaling(1, NAN, 1)));
    EXPECT_FALSE(App::polarPartsOf(scaling(1, INFINITY, 1)));
    EXPECT_TRUE(App::polarPartsOf(scaling(1, 1, 1e-3)));
}

TEST(Snapped, DigitsOfAFileDoNotCount) {
    Matrix noisy;
    noisy.at(0, 1) = noisy.at(1, 0) = 4e-6;
    noisy.at(2, 2) = 1.0 - 7e-6;
    EXPECT_EQ(App::snapped(noisy), Matrix());
    const Matrix scaled = scaling(2.5, 2.5, 0.3);
    EXPECT_EQ(App::snapped(scaling(2.5 + 1e-9, 2.5 - 1e-12, 0.3 + 1e-15)), scaled);
    EXPECT_EQ(App::snapped(App::snapped(scaling(1.0 / 3.0, 700.0 / 3.0, 1.0))),
              App::snapped(scaling(1.0 / 3.0, 700.0 / 3.0, 1.0)));
    EXPECT_TRUE(App::areAlike(scaled, scaling(2.5, 2.50002, 0.3)));
    EXPECT_FALSE(App::areAlike(scaled, scaling(2.5, 2.5001, 0.3)));
}

TEST(RotationsOf, AreQuarterTurnsAboutZThatKeepTheDirectionUp) {
    const UMatrix4<float> rotation = UMatrix4<float>::CreateRotateMatrix(1.2f, {1, 2, 3});
    const App::PoseRotations all = App::rotationsOf(rotation, App::Spins::kQuarters);
    ASSERT_EQ(all.size(), 4u);
    for (const Matrix& m : all) {
        EXPECT_LT(largestDifference(App::transposed(m) * m, {}), 1e-14);
        for (int row = 0; row < 3; ++row) EXPECT_EQ(m.at(row, 2), all.front().at(row, 2));
    }
    EXPECT_EQ(App::rotationsOf(rotation, App::Spins::kHalves).size(), 2u);
}

TEST(NearestTo, IsTheRotationOfTheLeastTurn) {
    const App::PoseRotations all = App::rotationsOf({}, App::Spins::kQuarters);
    for (int degrees = 0; degrees < 360; degrees += 7) {
        const Matrix present = turnAbout({0, 0, 1}, degrees);
        const int quarters = static_cast<int>(std::lround(degrees / 90.0)) % 4;
        EXPECT_LT(
            largestDifference(App::nearestTo(present, all), turnAbout({0, 0, 1}, 90.0 * quarters)),
            1e-12)
            << degrees;
    }
}

TEST(NearestTo, RoundingDoesNotDecideBetweenEqualTurns) {
    const App::PoseRotations all = App::rotationsOf({}, App::Spins::kQuarters);
    for (const double noise : {-1e-12, 0.0, 1e-12}) {
        EXPECT_EQ(App::nearestTo(turnAbout({0, 0, 1}, 45.0 + noise), all), Matrix());
    }
}

TEST(TurnBetween, IsExactlyTheIdentityWithinAHundredthOfADegree) {
    const Matrix present = turnAbout({3, 1, 2}, 50.0);
    EXPECT_EQ(App::turnBetween(present, present * turnAbout({1, 0, 0}, 0.009)), Matrix());
    EXPECT_FALSE(App::isSameRotation(present, present * turnAbout({1, 0, 0}, 0.011)));
    const Matrix turn = turnAbout({0, 1, 0}, 12.0);
    EXPECT_LT(largestDifference(App::turnBetween(present, present * turn), turn), 1e-14);
}

Tesk::PartMesh meshOf(const Part& part) {
    return App::partMeshOf({part.positions, part.triangles});
}

Tesk::PartMesh together(const std::vector<Tesk::PartMesh>& parts) {
    Tesk::PartMesh all;
    for (const Tesk::PartMesh& part : parts) {
        const auto first = static_cast<std::int32_t>(all.positions.size());
        all.positions.insert(all.positions.end(), part.positions.begin(), part.positions.end());
        for (const auto& [a, b, c] : part.triangles) {
            all.triangles.push_back({a + first, b + first, c + first});
        }
    }
    return all;
}

TEST(BodiesOf, TheyAreInTheOrderOfTheirFirstTrianglesAndKeepTheirMeshes) {
    const Tesk::PartMesh a = meshOf(makeBox({0, 0, 0}, {1, 1, 1}));
    const Tesk::PartMesh b = meshOf(makeSphere(2.0f, 100));
    const Tesk::PartMesh c = meshOf(makeBox({10, 0, 0}, {11, 1, 1}));
    const auto bodies = App::bodiesOf(together({c, a, b}));
    // The box at the origin lies in the sphere.
    ASSERT_EQ(bodies.size(), 2u);
    EXPECT_EQ(bodies[0].triangles.size(), c.triangles.size());
    EXPECT_EQ(bodies[0].positions.size(), c.positions.size());
    EXPECT_EQ(bodies[1].triangles.size(), a.triangles.size() + b.triangles.size());
}

TEST(BodiesOf, ABodyBesideAnotherWithinItsBoxIsNotInIt) {
    // In the corner of the sphere's box, outside the sphere.
    const Tesk::PartMesh ball = meshOf(makeSphere(10.0f, 500));
    const Tesk::PartMesh beside = meshOf(makeBox({8, 8, 8}, {9, 9, 9}));
    EXPECT_EQ(App::bodiesOf(together({ball, beside})).size(), 2u);
}

TEST(BodiesOf, ShellsWithinShellsAreOneBody) {
    std::vector<Tesk::PartMesh> shells;
    for (const float radius : {1.0f, 4.0f, 2.0f, 3.0f}) {
        shells.push_back(meshOf(makeSphere(radius, 60)));
    }
    EXPECT_EQ(App::bodiesOf(together(shells)).size(), 1u);
}

TEST(BodiesOf, LooseTrianglesAreTooMany) {
    EXPECT_ANY_THROW(App::bodiesOf(meshOf(makeSoup(20100, 100.0f, 3))));
}

TEST(OverlapOf, IsHowFarOneHasToMove) {
    const Tesk::PartMesh box = meshOf(makeBox({0, 0, 0}, {10, 4, 1}));
    const auto at = [&](double x, double y, double degrees) {
        Matrix m = turnAbout({0, 0, 1}, degrees);
        m.at(3, 0) = x;
        m.at(3, 1) = y;
        return App::footprintOf(box, m);
    };
    EXPECT_EQ(at(0, 0, 0).size(), 4u);
    EXPECT_NEAR(App::overlapOf(at(0, 0, 0), at(7, 1, 0)), 3.0, 1e-12);
    EXPECT_NEAR(App::overlapOf(at(0, 0, 0), at(1, -3.5, 0)), 0.5, 1e-12);
    EXPECT_EQ(App::overlapOf(at(0, 0, 0), at(10.5, 0, 0)), 0.0);
    // Its corner at (10, 2), its sides at 45° to the other's.
    EXPECT_NEAR(App::overlapOf(at(0, 0, 0), at(9.0, 0.0, 45.0)),
                App::overlapOf(at(9.0, 0.0, 45.0), at(0, 0, 0)), 1e-12);
}

TEST(FootprintOf, ARoundPartHasAllItsOuterCornersAndNoOther) {
    const Tesk::PartMesh disc = meshOf(makeCylinder(5.0f, 2.0f, 64));
    EXPECT_EQ(App::footprintOf(disc, {}).size(), 64u);
    Matrix onEdge;
    onEdge.at(1, 1) = onEdge.at(2, 2) = 0.0;
    onEdge.at(1, 2) = 1.0;
    onEdge.at(2, 1) = -1.0;
    EXPECT_EQ(App::footprintOf(disc, onEdge).size(), 4u);
}

}  // namespace

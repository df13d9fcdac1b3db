#include "pose/resting/HullFaceSnap.h"

#include <gtest/gtest.h>

#include <cmath>

#include "PoseShapes.h"
#include "plain/PlainPoseMeasures.h"
#include "pose/resting/NearPlate.h"
#include "shapes/BoxShapes.h"
#include "tools/TestRandom.h"

using namespace Tesk::pose;

namespace {

using Vector = UVector3<double>;

void expectSameFace(const Part& part, const Vector& up, double withinDeg) {
    const MeshKernel kernel = part.kernel();
    const PoseMesh mesh(kernel);
    const std::optional<RestingFace> face = restingFaceNear(mesh, up, withinDeg);
    const std::optional<double> area = plainLargestFace(kernel, up, withinDeg);
    ASSERT_EQ(face.has_value(), area.has_value());
    if (!face) return;
    EXPECT_NEAR(face->area, *area, 1e-4 * *area);
    EXPECT_GE(face->up | up, std::cos((withinDeg + 0.1) * 3.14159265 / 180.0));
}

TEST(HullFaceSnap, FindsTheFaceUnderneath) {
    const PoseMesh mesh(makeBox({0, 0, 0}, {30, 20, 10}).kernel());
    const std::optional<RestingFace> face =
        restingFaceNear(mesh, Vector(0.03, -0.02, 1.0).GetNormal(), kSnapDeg);
    ASSERT_TRUE(face);
    EXPECT_NEAR(face->up.z, 1.0, 1e-12);
    EXPECT_NEAR(face->area, 600.0, 1e-6);
}

TEST(HullFaceSnap, FindsNoneBeyondItsReach) {
    const PoseMesh mesh(makeBox({0, 0, 0}, {30, 20, 10}).kernel());
    EXPECT_FALSE(restingFaceNear(mesh, Vector(0.06, 0.0, 1.0).GetNormal(), kSnapDeg));
    EXPECT_TRUE(restingFaceNear(mesh, Vector(0.05, 0.0, 1.0).GetNormal(), kSnapDeg));
}

TEST(HullFaceSnap, TakesTheFacesOfTheHullOfAllVertices) {
    TestRandom random(11);
    for (int round = 0; round < 60; ++round) {
        Part part;
        switch (round % 4) {
            case 0:
                part.positions = pointsInBall(400, random);
                break;
            case 1:
                part.positions = transformed(prismCorners(40, 1.0f), randomTurn(random));
                break;
            case 2:
                part.positions = noisyPart(random);
                break;
            default:
                part.positions = transformed(roundedBox(3, 2, 1, 0.3f, 6), randomTurn(random));
                break;
        }
        for (UPoint3<float>& p : part.positions) p = {p.x * 20.0f, p.y * 20.0f, p.z * 20.0f};
        part.triangles = {{0, 1, 2}};
        for (int k = 0; k < 10; ++k) {
            const float x = random.in(-1.0f, 1.0f);
            const float y = random.in(-1.0f, 1.0f);
            const Vector up = UVector3<float>(x, y, random.in(-1.0f, 1.0f)).As<double>();
            expectSameFace(part, up.GetNormal(), k % 2 == 0 ? kSnapDeg : 12.0);
        }
    }
}

TEST(HullFaceSnap, AFineMeshOfAFlatFaceIsOneFace) {
    // A turned grid of points: rounding leaves none of them exactly in the plane.
    Part part = makeWavySheet(40, 50.0f);
    for (UPoint3<float>& p : part.positions) p.z = 0.0f;
    part = part.join(makeBox({0, 0, 0}, {50, 50, 20})).placed(someTurn());
    const PoseMesh mesh(part.kernel());
    const UMatrix4<float> turn = someTurn();
    const Vector up = Vector(static_cast<double>(turn.at(2, 0)), static_cast<double>(turn.at(2, 1)),
                             static_cast<double>(turn.at(2, 2)));
    const std::optional<RestingFace> face = restingFaceNear(mesh, up, kSnapDeg);
    ASSERT_TRUE(face);
    EXPECT_NEAR(face->area, 2500.0, 0.5);
    EXPECT_GT(face->up | up, 1.0 - 1e-9);
}

TEST(HullFaceSnap, AFineTiltedFaceIsOneFace) {
    Part part = makeWavySheet(120, 50.0f);
    for (UPoint3<float>& p : part.positions) p.z = 0.0f;
    part = part.join(makeBox({0, 0, 0}, {50, 50, 20})).placed(someTurn());
    const PoseMesh mesh(part.kernel());
    const UMatrix4<float> turn = someTurn();
    const auto column = [&](int i) { return static_cast<double>(turn.at(2, i)); };
    const Vector up(column(0), column(1), column(2));
    for (const Vector& aside : {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)}) {
        const Vector tilted = (up + (aside * up).GetNormal() * 0.04).GetNormal();
        const std::optional<RestingFace> face = restingFaceNear(mesh, tilted, kSnapDeg);
        ASSERT_TRUE(face);
        EXPECT_NEAR(face->area, 2500.0, 0.5);
        EXPECT_GT(face->up | up, 1.0 - 1e-9);
        NearPlate near = nearPlate(mesh, tilted, kSnapDeg, 0.0);
        thin(tilted, near);
        EXPECT_LT(near.points.size(), 1024u);
    }
}

}  // namespace

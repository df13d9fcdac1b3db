#include "pose/geometry/PoseTurn.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tools/TestRandom.h"

using namespace Tesk::pose;

namespace {

using Vector = UVector3<double>;

TEST(PoseTurn, BringsAnyDirectionUp) {
    TestRandom random(3);
    for (int i = 0; i < 200; ++i) {
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        const Vector d = UVector3<float>(x, y, random.in(-1.0f, 1.0f)).As<double>().GetNormal();
        const PoseTurn turn = PoseTurn::ontoUp(d);
        EXPECT_NEAR((turn.turned(d) - Vector(0, 0, 1)).GetLength(), 0.0, 1e-12);
        EXPECT_NEAR((turn.up() - d).GetLength(), 0.0, 1e-12);
        EXPECT_NEAR((turn.turnedBack(turn.turned({1, 2, 3})) - Vector(1, 2, 3)).GetLength(), 0.0,
                    1e-12);
    }
}

TEST(PoseTurn, IsExactAlongTheAxes) {
    const UMatrix4<float> down = PoseTurn::ontoUp({0, 0, -1}).matrix();
    EXPECT_EQ(down.at(0, 0), -1.0f);
    EXPECT_EQ(down.at(1, 1), 1.0f);
    EXPECT_EQ(down.at(2, 2), -1.0f);
    EXPECT_TRUE(PoseTurn::ontoUp({0, 0, 1}).matrix().isIdenticalMatrix());
    const UMatrix4<float> side = PoseTurn::ontoUp({1, 0, 0}).matrix();
    EXPECT_EQ(side.at(0, 2), 1.0f);
    EXPECT_EQ(side.at(2, 0), -1.0f);
    EXPECT_EQ(side.at(1, 1), 1.0f);
}

TEST(PoseTurn, NearlyAlongTheAxesIsRoundedToThem) {
    EXPECT_TRUE(
        PoseTurn::ontoUp(Vector(1e-7, -1e-7, 1.0).GetNormal()).matrix().isIdenticalMatrix());
    EXPECT_FALSE(PoseTurn::ontoUp(Vector(1e-3, 0.0, 1.0).GetNormal()).matrix().isIdenticalMatrix());
}

TEST(PoseTurn, FourQuartersAreNone) {
    const PoseTurn quarter = PoseTurn::aboutUp(std::numbers::pi / 2.0);
    EXPECT_EQ(quarter.matrix().at(0, 1), 1.0f);
    EXPECT_EQ(quarter.then(quarter).then(quarter).then(quarter).trace(), 3.0);
}

}  // namespace

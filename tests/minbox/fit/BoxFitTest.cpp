#include "minbox/fit/BoxFit.h"

#include <gtest/gtest.h>

#include "PreparedHull.h"

using namespace Tesk::minbox;

namespace {

TEST(BoxFit, BecomesABoxWithUnitAxesAndHalfLengths) {
    const HullPoints points = hullOf(boxCorners(2, 3, 4)).points();
    const BoxFrame frame = frameAlong(points, {Vector(2, 0, 0), Vector(0, 3, 0), Vector(0, 0, 5)});
    const OrientedBox3 box = toOrientedBox(points, frame);
    EXPECT_EQ(box.center, UVector3<float>(1, 1.5f, 2));
    EXPECT_EQ(box.extent, UVector3<float>(1, 1.5f, 2));
    EXPECT_EQ(box.axis[0], UVector3<float>(1, 0, 0));
    EXPECT_EQ(box.axis[2], UVector3<float>(0, 0, 1));
    EXPECT_EQ(callersVolume(points, frame), 24.0);
}

TEST(BoxFit, WithoutOneTheAxesAreAllOnes) {
    EXPECT_TRUE(isNoBox(noBox()));
}

}  // namespace

#include "minbox/fit/BoxFit.h"

#include <gtest/gtest.h>

#include <limits>

#include "PreparedHull.h"

using namespace Tesk::minbox;

namespace {

/// A hull, and a frame around it along the coordinate axes.
struct Framed {
    explicit Framed(const Points& corners) : points(hullOf(corners).points()) {
        frame.origin = points[0];
        frame.axes = {Vector(2, 0, 0), Vector(0, 3, 0), Vector(0, 0, 5)};
        for (std::size_t i = 0; i < 3; ++i) {
            frame.squaredLengths[i] = frame.axes[i] | frame.axes[i];
            frame.ranges[i] = points.rangeAlong(frame.origin, frame.axes[i]);
        }
    }

    HullPoints points;
    BoxFrame frame;
};

TEST(BoxFit, AFrameThatHoldsTheHullKeepsItsBits) {
    Framed framed(boxCorners(2, 3, 4));
    const BoxFrame before = framed.frame;
    EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kSound);
    EXPECT_EQ(framed.frame, before);
}

TEST(BoxFit, AFrameThatMissesAVertexTakesItsRangesAnew) {
    Framed framed(boxCorners(2, 3, 4));
    const BoxFrame whole = framed.frame;
    framed.frame.ranges[1].max *= 0.999;
    EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kRemeasured);
    EXPECT_EQ(framed.frame.ranges, whole.ranges);
}

TEST(BoxFit, RoundingIsNoMiss) {
    Framed framed(boxCorners(2, 3, 4));
    framed.frame.ranges[1].max *= 1.0 - 1e-12;
    EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kSound);
}

TEST(BoxFit, ASkewedFrameIsDropped) {
    for (std::size_t i = 0; i < 3; ++i) {
        Framed framed(boxCorners(2, 3, 4));
        const Vector& other = framed.frame.axes[(i + 1) % 3];
        framed.frame.axes[i] = framed.frame.axes[i] + other * 1e-6;
        EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kDropped);
    }
}

TEST(BoxFit, AnAxisWithoutLengthOrNumberIsDropped) {
    for (const double length : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()}) {
        Framed framed(boxCorners(2, 3, 4));
        framed.frame.squaredLengths[1] = length;
        EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kDropped);
    }
}

TEST(BoxFit, BecomesABoxWithUnitAxesAndHalfLengths) {
    Framed framed(boxCorners(2, 3, 4));
    framed.frame.volume = 24.0;
    const OrientedBox3 box = toOrientedBox(framed.points, framed.frame);
    EXPECT_EQ(box.center, UVector3<float>(1, 1.5f, 2));
    EXPECT_EQ(box.extent, UVector3<float>(1, 1.5f, 2));
    EXPECT_EQ(box.axis[0], UVector3<float>(1, 0, 0));
    EXPECT_EQ(box.axis[2], UVector3<float>(0, 0, 1));
    EXPECT_EQ(callersVolume(framed.points, framed.frame), 24.0);
}

TEST(BoxFit, WithoutOneTheAxesAreAllOnes) {
    EXPECT_TRUE(isNoBox(noBox()));
}

}  // namespace

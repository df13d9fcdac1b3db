#include "minbox/fit/BoxCheck.h"

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

TEST(BoxCheck, AFrameThatHoldsTheHullKeepsItsBits) {
    Framed framed(boxCorners(2, 3, 4));
    const BoxFrame before = framed.frame;
    EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kSound);
    EXPECT_EQ(framed.frame, before);
}

TEST(BoxCheck, AFrameThatMissesAVertexTakesItsRangesAnew) {
    Framed framed(boxCorners(2, 3, 4));
    const BoxFrame whole = framed.frame;
    framed.frame.ranges[1].max *= 0.999;
    EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kRemeasured);
    EXPECT_EQ(framed.frame.ranges, whole.ranges);
}

TEST(BoxCheck, RoundingIsNoMiss) {
    Framed framed(boxCorners(2, 3, 4));
    framed.frame.ranges[1].max *= 1.0 - 1e-12;
    EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kSound);
}

TEST(BoxCheck, ASkewedFrameIsDropped) {
    for (std::size_t i = 0; i < 3; ++i) {
        Framed framed(boxCorners(2, 3, 4));
        const Vector& other = framed.frame.axes[(i + 1) % 3];
        framed.frame.axes[i] = framed.frame.axes[i] + other * 1e-6;
        EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kDropped);
    }
}

TEST(BoxCheck, AnAxisWithoutLengthOrNumberIsDropped) {
    for (const double length : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                                std::numeric_limits<double>::quiet_NaN()}) {
        Framed framed(boxCorners(2, 3, 4));
        framed.frame.squaredLengths[1] = length;
        EXPECT_EQ(checkFrame(framed.points, framed.frame), FrameState::kDropped);
    }
}

}  // namespace

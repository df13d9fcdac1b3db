#include <gtest/gtest.h>

#include <limits>

#include "BoxTestSupport.h"
#include "minbox/axes/AxisPlane.h"

using namespace Tesk::minbox;

namespace {

using Axis = UVector3<float>;

OrientedBox3 around(const Axis& axis, const Points& points) {
    MinBoundingBox calculator;
    return calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), axis);
}

float crossSection(const OrientedBox3& box) {
    return 4.0f * box.extent.x * box.extent.y;
}

TEST(AxisBox, AroundZIsTheLeastRectangleOfTheFootprint) {
    const UMatrix4<float> turn = UMatrix4<float>::CreateRotateMatrix(0.3f, {0, 0, 1});
    const OrientedBox3 box = around({0, 0, 1}, transformed(boxCorners(2, 3, 4), turn));
    EXPECT_NEAR(crossSection(box), 6.0f, 1e-5f);
    EXPECT_EQ(box.axis[2], Axis(0, 0, 1));
    EXPECT_EQ(box.extent.z, 2.0f);
}

TEST(AxisBox, OfTheUnitCubeAroundADiagonalOfASide) {
    const OrientedBox3 box = around({0, 3, 4}, boxCorners(1, 1, 1));
    EXPECT_NEAR(crossSection(box), 1.4f, 1e-6f);
    EXPECT_NEAR(2.0f * box.extent.z, 1.4f, 1e-6f);
}

TEST(AxisBox, TheAxisNeedNotBeOfUnitLength) {
    TestRandom random(1);
    const Points points = pointsInBall(50, random);
    const OrientedBox3 box = around({0.25f, 0.5f, 1.0f}, points);
    for (const float scale : {0.125f, 4.0f, 1024.0f}) {
        const OrientedBox3 other = around({0.25f * scale, 0.5f * scale, scale}, points);
        EXPECT_NEAR(crossSection(other), crossSection(box), 1e-6f);
        EXPECT_EQ(other.axis[2], box.axis[2]);
    }
}

TEST(AxisBox, TheCoordinateAxesBothWaysGiveTheSameSize) {
    TestRandom random(4);
    const Points points = transformed(boxCorners(5, 2, 1), randomTurn(random));
    for (const Axis& axis : {Axis(1, 0, 0), Axis(0, 1, 0)}) {
        const OrientedBox3 box = around(axis, points);
        const OrientedBox3 back = around(Axis(0, 0, 0) - axis, points);
        EXPECT_NEAR(crossSection(box), crossSection(back), 1e-5f);
        EXPECT_NEAR(box.extent.z, back.extent.z, 1e-6f);
        EXPECT_EQ(box.axis[2], axis);
        EXPECT_LT(farthestOutside(box, points), 1e-5);
    }
}

TEST(AxisBox, AxesAlongZOtherThanZItselfGiveNoBox) {
    for (const Axis& axis : {Axis(0, 0, -1), Axis(0, 0, 2), Axis(0, 0, 0.5f)}) {
        EXPECT_TRUE(isNoBox(around(axis, boxCorners(1, 2, 3))));
    }
}

TEST(AxisBox, AnAxisWithoutADirectionGivesNoBox) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (const Axis& axis : {Axis(), Axis(nan, 0, 1), Axis(0, infinity, 1), Axis(0, 0, nan)}) {
        EXPECT_TRUE(isNoBox(around(axis, boxCorners(1, 2, 3))));
    }
}

TEST(AxisBox, PointsOnALineAlongTheAxisGiveASegmentBox) {
    const Points points = {{1, 2, 3}, {1, 2, 5}, {1, 2, 4}};
    const OrientedBox3 box = around({0, 0, 1}, points);
    EXPECT_EQ(box.center, Axis(1, 2, 4));
    EXPECT_EQ(box.extent, Axis(0, 0, 1));
    EXPECT_EQ(box.axis[2], Axis(0, 0, 1));
}

TEST(AxisBox, PointsInAPlaneAlongTheAxisGiveAFlatBox) {
    const Points points = {{0, 0, 0}, {3, 4, 0}, {3, 4, 7}, {0, 0, 7}};
    const OrientedBox3 box = around({0, 0, 1}, points);
    EXPECT_FLOAT_EQ(box.extent.x, 2.5f);
    EXPECT_NEAR(box.extent.y, 0.0f, 1e-6f);
    EXPECT_FLOAT_EQ(box.extent.z, 3.5f);
    EXPECT_LT(farthestOutside(box, points), 1e-6);
}

TEST(AxisBox, AlongAnEdgeOfATurnedBoxIsTheBoxItself) {
    // The ends of the edges part in the shadow, as the turned corners are rounded.
    const UMatrix4<float> turn = UMatrix4<float>::CreateRotateMatrix(3.0f, {1, 2, 3});
    Points points = transformed(boxCorners(2, 3, 4), turn);
    for (UPoint3<float>& p : points) p = p + UVector3<float>(20, -30, 40);
    const Axis edge = points[2] - points[0];
    for (const float scale : {1e-30f, 1.0f, 1e30f}) {
        const OrientedBox3 box = around(edge * scale, points);
        EXPECT_NEAR(crossSection(box), 8.0f, 2e-5f);
        EXPECT_NEAR(2.0f * box.extent.z, 3.0f, 1e-5f);
        EXPECT_LT(farthestOutside(box, points), 1e-5);
    }
}

TEST(AxisBox, OfAShadowWithoutAreaRunsAlongIt) {
    // Along the diagonal of a turned rectangle, and along a turned segment.
    const UMatrix4<float> turn = UMatrix4<float>::CreateRotateMatrix(0.7f, {3, -1, 2});
    const Points flat = transformed({{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}}, turn);
    const OrientedBox3 box = around(flat[2] - flat[0], flat);
    EXPECT_NEAR(2.0f * box.extent.x, 4.8f, 1e-5f);
    EXPECT_NEAR(box.extent.y, 0.0f, 1e-6f);
    EXPECT_NEAR(box.extent.z, 2.5f, 1e-6f);
    const OrientedBox3 segment = around(flat[1] - flat[0], {flat[0], flat[1]});
    EXPECT_NEAR(segment.extent.x, 0.0f, 1e-6f);
    EXPECT_NEAR(segment.extent.y, 0.0f, 1e-6f);
    EXPECT_NEAR(segment.extent.z, 2.0f, 1e-6f);
}

TEST(AxisBox, OfAShadowOfNextToNothingIsNotInsideOut) {
    // In single precision the corners turn the wrong way round, by less than what a box may miss.
    const Points points = {{-0x1.a48538p+5f, 0x1.86cc4ap+5f, 0x1.55aae8p+5f},
                           {-0x1.044a9p+2f, 0x1.a7c608p+3f, 0x1.8f3a6p+2f},
                           {0x1.0c40dep+6f, -0x1.37d7e8p+5f, -0x1.7a0466p+5f}};
    const OrientedBox3 box = around(points[2] - points[1], points);
    EXPECT_NEAR(crossSection(box) / 2.43597e-14f, 1.0f, 1e-4f);
}

TEST(AxisBox, OfAPrismThatRunsAlongASkewAxisIsOverItsBase) {
    // Whole coordinates: the prism's edges are exactly parallel to the axis, but rounding moves the
    // two ends of each apart in the shadow.
    const Points base = {{4, -2, 0}, {-4, 2, 0}, {20, 0, -5}, {12, 4, -5}, {-11, -17, 3}};
    for (const Axis& along : {Axis(1, 2, 4), Axis(3, 6, 12), Axis(-7, -14, -28)}) {
        Points prism = base;
        for (const UPoint3<float>& p : base) prism.push_back(p + along);
        const OrientedBox3 box = around({0.25f, 0.5f, 1.0f}, prism);
        ASSERT_FALSE(isNoBox(box));
        EXPECT_LT(farthestOutside(box, prism), 1e-5);
        EXPECT_NEAR(crossSection(box), crossSection(around({0.25f, 0.5f, 1.0f}, base)), 1e-3f);
    }
}

TEST(AxisBox, PointsInAPlaneAlongASkewAxisGiveAFlatBox) {
    const Points points = {{-10, -17, -37}, {-5, 9, -1},    {0, 2, 2},      {-11, -8, -30},
                           {-4, 6, -2},     {-2, 6, 2},     {-5, 8, -2},    {-15, -16, -46},
                           {-12, -22, -46}, {-11, -3, -25}, {-19, -23, -61}};
    const OrientedBox3 box = around({0.25f, 0.5f, 1.0f}, points);
    ASSERT_FALSE(isNoBox(box));
    EXPECT_LT(farthestOutside(box, points), 1e-5);
    EXPECT_NEAR(std::min(box.extent.x, box.extent.y), 0.0f, 1e-4f);
}

TEST(AxisBox, NeitherReportsNorCanBeAborted) {
    MinBoundingBox calculator(2);
    calculator.setCallBackFunction([](int) { FAIL() << "a report"; });
    const Points points = boxCorners(1, 2, 3);
    calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), {0, 0, 1});
}

TEST(AxisBox, ThePlaneTurnsAboutTheAxisAsItSays) {
    for (const Axis& axis : {Axis(1, 0, 0), Axis(0, 1, 0), Axis(0, 0, 1), Axis(0.2f, -3, 0.7f)}) {
        const AxisPlane plane(axis);
        ASSERT_TRUE(plane.isSound());
        // How the plane's coordinates turn, from the images of the coordinate axes.
        UVector3<double> turn;
        const UPoint3<float> units[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        for (int i = 0; i < 3; ++i) {
            const UPoint3<float>& a = units[(i + 1) % 3];
            const UPoint3<float>& b = units[(i + 2) % 3];
            turn[i] = plane.u(a) * plane.v(b) - plane.v(a) * plane.u(b);
        }
        EXPECT_EQ((turn | axis.As<double>()) > 0.0, plane.isRightHanded());
    }
}

}  // namespace

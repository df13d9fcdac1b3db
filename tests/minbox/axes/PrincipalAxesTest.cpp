#include "minbox/axes/PrincipalAxes.h"

#include <gtest/gtest.h>

#include <limits>

#include "BoxTestSupport.h"

using namespace Tesk::minbox;

namespace {

OrientedBox3 boxOf(const Points& points) {
    return MinBoundingBox::generateOBB(points.data(), countOf(points));
}

TEST(PrincipalAxes, ExtentsAreFullLengths) {
    EXPECT_EQ(boxOf(boxCorners(1, 1, 1)).extent, UVector3<float>(1, 1, 1));
    const OrientedBox3 box = boxOf(boxCorners(2, 4, 3));
    EXPECT_EQ(box.extent, UVector3<float>(4, 2, 3));
    EXPECT_EQ(box.center, UVector3<float>(1, 2, 1.5f));
}

TEST(PrincipalAxes, PointsAlongXHaveTheirFirstAxisAlongX) {
    Points points;
    for (int i = 0; i < 11; ++i) points.emplace_back(static_cast<float>(i), 1.0f, 2.0f);
    const OrientedBox3 box = boxOf(points);
    EXPECT_EQ(box.axis[0], UVector3<float>(1, 0, 0));
    EXPECT_EQ(box.extent, UVector3<float>(10, 0, 0));
}

TEST(PrincipalAxes, TheSecondEigenvalueAsTheLargestLeavesTheOthersInPlace) {
    using Order = std::array<int, 3>;
    EXPECT_EQ(axisOrder({1, 3, 2}), (Order{1, 0, 2}));
    EXPECT_EQ(axisOrder({2, 3, 1}), (Order{1, 2, 0}));
    EXPECT_EQ(axisOrder({1, 2, 3}), (Order{2, 1, 0}));
    EXPECT_EQ(axisOrder({3, 1, 2}), (Order{0, 2, 1}));
    EXPECT_EQ(axisOrder({3, 2, 1}), (Order{0, 1, 2}));
    EXPECT_EQ(axisOrder({2, 1, 3}), (Order{2, 0, 1}));
}

TEST(PrincipalAxes, EqualEigenvaluesTakeTheBranchesAsTheyCome) {
    using Order = std::array<int, 3>;
    EXPECT_EQ(axisOrder({1, 1, 1}), (Order{2, 1, 0}));
    EXPECT_EQ(axisOrder({2, 2, 1}), (Order{1, 2, 0}));
    EXPECT_EQ(axisOrder({1, 2, 1}), (Order{1, 2, 0}));
    EXPECT_EQ(axisOrder({2, 1, 2}), (Order{2, 0, 1}));
    EXPECT_EQ(axisOrder({2, 1, 1}), (Order{0, 1, 2}));
}

TEST(PrincipalAxes, OfATurnedBoxFollowTheTurn) {
    TestRandom random(9);
    for (int i = 0; i < 50; ++i) {
        const Points points = transformed(boxCorners(30, 20, 10), randomTurn(random));
        const OrientedBox3 box = boxOf(points);
        EXPECT_NEAR(box.extent[0], 30.0f, 1e-3f);
        EXPECT_NEAR(sortedExtents(box)[1], 20.0f, 1e-3f);
        EXPECT_NEAR(sortedExtents(box)[0], 10.0f, 1e-3f);
        EXPECT_NEAR((box.axis[0] * box.axis[1]) | box.axis[2], 1.0f, 1e-5f);
    }
}

TEST(PrincipalAxes, TheCovarianceIsThePopulations) {
    const Points points = {{0, 0, 0}, {2, 0, 0}, {0, 4, 0}, {2, 4, 0}};
    const UMatrix4<float> c = covarianceOf(points.data(), countOf(points));
    EXPECT_EQ(c.at(0, 0), 1.0f);
    EXPECT_EQ(c.at(1, 1), 4.0f);
    EXPECT_EQ(c.at(0, 1), 0.0f);
    EXPECT_EQ(c.at(2, 2), 0.0f);
}

TEST(PrincipalAxes, WithoutFinitePointsThereIsNoBox) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    EXPECT_TRUE(isNoBox(MinBoundingBox::generateOBB(nullptr, 5)));
    EXPECT_TRUE(isNoBox(boxOf({})));
    const Points points = boxCorners(1, 1, 1);
    EXPECT_TRUE(isNoBox(MinBoundingBox::generateOBB(points.data(), -1)));
    EXPECT_TRUE(isNoBox(boxOf({{0, 0, 0}, {1, nan, 0}})));
    EXPECT_TRUE(isNoBox(boxOf({{0, 0, 0}, {1, 1, -infinity}})));
}

TEST(PrincipalAxes, OfALargePartAreThoseOfASmallOne) {
    for (const float s : {0x1p20f, 0x1p30f, 0x1p34f, 0x1p50f, 0x1p100f}) {
        const OrientedBox3 box = boxOf({{0, 0, 0}, {3 * s, s, 0}, {0, 2 * s, s}, {s, s, s}});
        const OrientedBox3 small =
            boxOf({{0, 0, 0}, {3000, 1000, 0}, {0, 2000, 1000}, {1000, 1000, 1000}});
        ASSERT_FALSE(isNoBox(box));
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(box.extent[i] / s, small.extent[i] / 1000.0f, 1e-4f) << s;
        }
    }
}

TEST(PrincipalAxes, VeryLargeCoordinatesDoNotOverflow) {
    const OrientedBox3 box = boxOf(boxCorners(2e30f, 4e30f, 3e30f));
    EXPECT_FLOAT_EQ(box.extent.x, 4e30f);
    EXPECT_FLOAT_EQ(box.center.y, 2e30f);
}

}  // namespace

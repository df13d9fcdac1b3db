#include <gtest/gtest.h>

#include "BoxTestSupport.h"
#include "plain/PlainAxisBox.h"
#include "plain/PlainBaseAreaBox.h"
#include "plain/PlainPrincipalBox.h"
#include "plain/PlainVolumeBox.h"

/// The plain versions give the numbers that can be told by hand.
namespace {

PlainBoxRecord leastVolume(const PlainHull& hull) {
    return plainLeastVolume(plainFaceSearch(hull, 1), plainEdgeSearch(hull));
}

PlainHull hullOf(const Points& points) {
    return {gte::ConvexHull3(points.data(), countOf(points), 3), countOf(points)};
}

TEST(PlainVolumeBox, ABoxHasItsOwnVolumeAndHalfLengths) {
    const PlainHull hull = hullOf(boxCorners(2, 3, 4));
    const PlainBoxRecord best = leastVolume(hull);
    EXPECT_EQ(best.volume, 24.0);
    EXPECT_EQ(sortedExtents(plainOrientedBox(best)), (std::array<float, 3>{1.0f, 1.5f, 2.0f}));
    EXPECT_EQ(plainEdgeSearch(hull).volume, 24.0);
}

TEST(PlainVolumeBox, ATetrahedronHasNoOrthogonalEdges) {
    const PlainHull hull = hullOf(tetrahedronCorners());
    EXPECT_EQ(plainEdgeSearch(hull).volume, -1.0);
    EXPECT_NEAR(plainFaceSearch(hull, 1).volume, 16.0, 1e-12);
}

TEST(PlainVolumeBox, TwelvePointsNeedTheEdgeSearch) {
    const PlainHull hull = hullOf(twelvePoints());
    EXPECT_EQ(plainEdgeSearch(hull).volume, 8.0);
    EXPECT_NEAR(plainFaceSearch(hull, 1).volume, 152.0 / 17.0, 1e-12);
    EXPECT_EQ(leastVolume(hull).volume, 8.0);
}

TEST(PlainVolumeBox, AWedgeFillsHalfItsBox) {
    EXPECT_NEAR(leastVolume(hullOf(wedgeCorners())).volume, 600.0, 1e-9);
}

TEST(PlainBaseAreaBox, TheLowestBoxLiesOnItsLargestSide) {
    const PlainBoxRecord best = plainLeastHeight(hullOf(boxCorners(2, 3, 4)), 1);
    EXPECT_EQ(best.height, 2.0f);
    const OrientedBox3 box = plainOrientedBox(best);
    EXPECT_EQ(4.0f * box.extent[0] * box.extent[1], 12.0f);
    EXPECT_EQ(std::fabs(box.axis[2].x), 1.0f);
}

TEST(PlainBaseAreaBox, TheScoreIsTheSmallestSide) {
    EXPECT_EQ(plainLeastBaseArea(hullOf(boxCorners(8000, 12000, 16000)), 1).score, 9.6e7f);
    EXPECT_EQ(plainLeastBaseArea(hullOf(boxCorners(2, 3, 4)), 4).score, 6.0f);
}

TEST(PlainAxisBox, ACubeAcrossASlantedAxisShowsARectangle) {
    const Points cube = boxCorners(1, 1, 1);
    const gte::ConvexHull3 hull(cube.data(), countOf(cube), 3);
    const UVector3<float> axis(0, 3, 4);
    const OrientedBox3 box = plainOrientedBox(plainAxisBox(hull, axis));
    EXPECT_NEAR(4.0f * box.extent[0] * box.extent[1], 1.4f, 1e-6f);
    EXPECT_NEAR(2.0f * box.extent[2], 1.4f, 1e-6f);
    EXPECT_EQ(box.axis[2], UVector3<float>(0, 0.6f, 0.8f));
}

TEST(PlainPrincipalBox, ABoxHasItsFullLengthsLargestFirst) {
    const OrientedBox3 box = plainPrincipalBox(boxCorners(2, 4, 3));
    EXPECT_EQ(box.extent, UVector3<float>(4, 2, 3));
    EXPECT_EQ(box.center, UVector3<float>(1, 2, 1.5f));
}

}  // namespace

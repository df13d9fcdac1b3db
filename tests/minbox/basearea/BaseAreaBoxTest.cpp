#include <gtest/gtest.h>

#include "PreparedHull.h"
#include "minbox/basearea/BaseAreaScores.h"
#include "minbox/basearea/BaseAreaSearch.h"

using namespace Tesk::minbox;

namespace {

OrientedBox3 lowest(const Points& points, unsigned int threads = 1) {
    MinBoundingBox calculator(threads);
    return calculator.minBaseAreaAndHeightBox(countOf(points), points.data());
}

OrientedBox3 leastBase(const Points& points, unsigned int threads = 1) {
    MinBoundingBox calculator(threads);
    return calculator.minBaseAreaBox(countOf(points), points.data());
}

float smallestSide(const OrientedBox3& box) {
    const auto [a, b, c] = sortedExtents(box);
    return 4.0f * a * b;
}

TEST(BaseAreaBox, TheLowestBoxOfABoxStandsOnItsLargestSide) {
    const OrientedBox3 box = lowest(boxCorners(2, 3, 4));
    EXPECT_EQ(box.extent.z, 1.0f);
    EXPECT_EQ(4.0f * box.extent.x * box.extent.y, 12.0f);
    EXPECT_EQ(std::fabs(box.axis[2].x), 1.0f);
}

TEST(BaseAreaBox, TheSmallestSideOfALargeBoxIsFound) {
    MinBoundingBoxImpl impl(1);
    const Points points = boxCorners(8000, 12000, 16000);
    impl.baseAreaMode = true;
    impl.pointCount = countOf(points);
    EXPECT_EQ(searchDirections(impl, hullOf(points)).value().score, 9.6e7f);
    EXPECT_EQ(smallestSide(leastBase(points)), 9.6e7f);
}

TEST(BaseAreaBox, TheThirdAxisIsAHullFacesNormal) {
    TestRandom random(2);
    const Points points = pointsInBall(60, random);
    const SearchHull hull = hullOf(points);
    for (const OrientedBox3& box : {lowest(points), leastBase(points)}) {
        double best = 0.0;
        for (const Vector& normal : hull.normals()) {
            best = std::max(best, std::fabs(normal.GetNormal() | box.axis[2].As<double>()));
        }
        EXPECT_GT(best, 1.0 - 1e-7);
    }
}

TEST(BaseAreaBox, OfACubeWhoseEdgesRunExactlyAlongItsNormals) {
    // Whole coordinates at a slant: the normals are so long that rounding leaves edges in every
    // outline that run along the direction, and the calipers start on one.
    for (const float unit : {1.0f, 3.0f, 1001.0f, 47033.0f, 141099.0f}) {
        const UVector3<float> frame[3] = {{2, 3, 6}, {3, -6, 2}, {6, 2, -3}};
        Points points;
        for (const UPoint3<float>& p : boxCorners(2, 2, 2)) {
            const UVector3<float> v = (frame[0] * p.x + frame[1] * p.y + frame[2] * p.z) * unit;
            points.emplace_back(v.x, v.y, v.z);
        }
        const float half = 7 * unit;
        for (const Operation& operation : allOperations()) {
            if (std::string(operation.name) == "axis") continue;
            MinBoundingBox calculator;
            const OrientedBox3 box = operation.run(calculator, points);
            ASSERT_FALSE(isNoBox(box)) << operation.name << " " << unit;
            for (int i = 0; i < 3; ++i) EXPECT_NEAR(box.extent[i], half, 1e-6f * half);
        }
    }
}

TEST(BaseAreaBox, IsTheSameForAnyThreadCount) {
    for (const NamedPoints& set : comparisonPoints()) {
        const OrientedBox3 low = lowest(set.points);
        const OrientedBox3 base = leastBase(set.points);
        for (const unsigned int threads : {2u, 3u, 4u, 8u, 13u}) {
            EXPECT_TRUE(sameBits(low, lowest(set.points, threads))) << set.name;
            EXPECT_TRUE(sameBits(base, leastBase(set.points, threads))) << set.name;
        }
    }
}

TEST(BaseAreaBox, OfEqualHeightsTheLowestTriangleWins) {
    const Points cube = boxCorners(1, 1, 1);
    const SearchHull hull = hullOf(cube);
    for (const unsigned int threads : {1u, 2u, 5u}) {
        for (const OrientedBox3& box : {lowest(cube, threads), leastBase(cube, threads)}) {
            EXPECT_EQ(box.axis[2], hull.normal(0).GetNormal().As<float>());
        }
    }
}

TEST(BaseAreaBox, NoOtherFaceNormalGivesALowerBox) {
    TestRandom random(8);
    for (int i = 0; i < 20; ++i) {
        const Points points = pointsInCube(40, random);
        const SearchHull hull = hullOf(points);
        double least = 1e30;
        for (const Vector& normal : hull.normals()) {
            const Vector unit = normal.GetNormal();
            least = std::min(least, hull.points().rangeAlong(hull.points()[0], unit).length());
        }
        EXPECT_NEAR(2.0f * lowest(points).extent.z, least, 1e-6);
    }
}

TEST(BaseAreaBox, TheScoreMarksWhichSideIsTheSmallest) {
    BoxCandidate box;
    box.squaredLengths = {1, 1, 1};
    box.ranges = {Range{0, 2}, Range{0, 3}, Range{0, 4}};
    measureAgain(startConstants(), BaseAreaKey::kScore, box);
    EXPECT_EQ(box.score, 6.0f);
    EXPECT_EQ(box.faceFlag, 0.0f);
    box.ranges = {Range{0, 4}, Range{0, 3}, Range{0, 2}};
    measureAgain(startConstants(), BaseAreaKey::kScore, box);
    EXPECT_EQ(box.score, 6.0f);
    EXPECT_EQ(box.faceFlag, 1.0f);
    EXPECT_EQ(box.volume, 24.0);
    EXPECT_EQ(box.area, 12.0);
}

TEST(BaseAreaBox, TheModesAreClearedAfterACall) {
    MinBoundingBoxImpl impl(1);
    const Points points = boxCorners(2, 3, 4);
    searchLeastHeight(impl, countOf(points), points.data());
    EXPECT_FALSE(impl.heightMode);
    searchLeastBaseArea(impl, countOf(points), points.data());
    EXPECT_FALSE(impl.baseAreaMode);
    EXPECT_TRUE(impl.caliperFlag);
    EXPECT_EQ(impl.pointCount, 8);
    EXPECT_EQ(impl.lastVolume, 24.0f);
}

}  // namespace

#include "TeskSDKCommonTools/ConvexHull2.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "TestRandom.h"
#include "TestSize.h"

namespace {

using Plane = std::vector<std::array<double, 2>>;

std::vector<int> hullOf(const Plane& points) {
    std::vector<double> coordinates;
    for (const auto& [x, y] : points) {
        coordinates.push_back(x);
        coordinates.push_back(y);
    }
    return gte::ConvexHull2(coordinates, static_cast<int>(points.size())).getIndices();
}

__extension__ using Int128 = __int128;

/// The turn of three points whose coordinates are multiples of 2^-50 below 2^4, without rounding.
Int128 turn(const std::array<double, 2>& a, const std::array<double, 2>& b,
            const std::array<double, 2>& c) {
    const auto whole = [](double v) { return Int128{static_cast<std::int64_t>(v * 0x1p50)}; };
    return (whole(b[0]) - whole(a[0])) * (whole(c[1]) - whole(a[1])) -
           (whole(b[1]) - whole(a[1])) * (whole(c[0]) - whole(a[0]));
}

/// Strictly convex, counter-clockwise, no point outside.
void expectHull(const Plane& points) {
    const std::vector<int> hull = hullOf(points);
    const auto at = [&](std::size_t i) {
        return points[static_cast<std::size_t>(hull[i % hull.size()])];
    };
    if (hull.size() < 3) return;
    for (std::size_t i = 0; i < hull.size(); ++i) {
        ASSERT_TRUE(turn(at(i), at(i + 1), at(i + 2)) > 0);
        for (const auto& p : points) ASSERT_TRUE(turn(at(i), at(i + 1), p) >= 0);
    }
}

TEST(ConvexHull2, OfASquareIsItsCornersFromTheLowestOn) {
    EXPECT_EQ(hullOf({{1, 1}, {0, 0}, {0, 1}, {1, 0}, {0.5, 0.5}, {0.5, 0}}),
              (std::vector<int>{1, 3, 0, 2}));
}

TEST(ConvexHull2, OfEqualPointsTheLowestIndexStandsForAll) {
    EXPECT_EQ(hullOf({{0, 0}, {1, 0}, {0, 0}, {0, 1}, {1, 0}}), (std::vector<int>{0, 1, 3}));
}

TEST(ConvexHull2, OfALineIsItsTwoEnds) {
    EXPECT_EQ(hullOf({{1, 1}, {0, 0}, {2, 2}, {2, 2}}), (std::vector<int>{1, 2}));
}

TEST(ConvexHull2, OfOnePointIsThePoint) {
    EXPECT_EQ(hullOf({{3, 4}, {3, 4}}), (std::vector<int>{0}));
}

TEST(ConvexHull2, OfNothingIsEmpty) {
    EXPECT_TRUE(hullOf({}).empty());
    EXPECT_TRUE(gte::ConvexHull2({1.0, 2.0}, -1).getIndices().empty());
    EXPECT_EQ(gte::ConvexHull2({1.0, 2.0}, 7).getIndices(), (std::vector<int>{0}));
}

TEST(ConvexHull2, LeavesOutPointsThatAreNotFinite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(hullOf({{nan, 0}, {0, 0}, {1, 0}, {infinity, 5}, {0, 1}, {0, -infinity}}),
              (std::vector<int>{1, 2, 4}));
}

TEST(ConvexHull2, IsStrictlyConvexOnGridsFullOfTies) {
    TestRandom random(1);
    for (int i = 0; i < (testsAreSmall() ? 500 : 5000); ++i) {
        Plane points;
        const int size = 1 + random.below(8);
        for (int k = 1 + random.below(40); k > 0; --k) {
            points.push_back(
                {static_cast<double>(random.below(size)), static_cast<double>(random.below(size))});
        }
        expectHull(points);
    }
}

TEST(ConvexHull2, IsExactOnPointsTheLastBitAwayFromALine) {
    TestRandom random(2);
    int corners = 0;
    for (int i = 0; i < (testsAreSmall() ? 500 : 5000); ++i) {
        // Points near the line through (0.5, 0.5) and (12, 12), a few last bits off.
        Plane points = {{0.5, 0.5}, {12, 12}};
        for (int k = 0; k < 10; ++k) {
            const double t = 0.5 + 11.5 * static_cast<double>(random.in(0, 1));
            points.push_back({t, t + 0x1p-49 * (random.below(5) - 2)});
        }
        expectHull(points);
        corners += static_cast<int>(hullOf(points).size());
    }
    EXPECT_GT(corners, 1000);
}

}  // namespace

#include "TeskSDKCommonTools/ConvexHull2.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "checks/PolygonChecks.h"
#include "tools/TestRandom.h"
#include "tools/TestSize.h"

namespace {

std::vector<int> hullOf(const PlanePoints& points) {
    std::vector<double> coordinates;
    for (const auto& [x, y] : points) {
        coordinates.push_back(x);
        coordinates.push_back(y);
    }
    return gte::ConvexHull2(coordinates, static_cast<int>(points.size())).getIndices();
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

TEST(ConvexHull2, IsExactOnGridsFullOfTies) {
    TestRandom random(1);
    for (int i = 0; i < (testsAreSmall() ? 500 : 5000); ++i) {
        PlanePoints points;
        const int size = 1 + random.below(8);
        for (int k = 1 + random.below(40); k > 0; --k) {
            const auto x = static_cast<double>(random.below(size));
            points.push_back({x, static_cast<double>(random.below(size))});
        }
        ASSERT_EQ(faultOfPolygon(hullOf(points), points), "") << i;
    }
}

TEST(ConvexHull2, IsExactOnPointsTheLastBitAwayFromALine) {
    TestRandom random(2);
    int corners = 0;
    for (int i = 0; i < (testsAreSmall() ? 500 : 5000); ++i) {
        // Points near the line through (0.5, 0.5) and (12, 12), a few last bits off.
        PlanePoints points = {{0.5, 0.5}, {12, 12}};
        for (int k = 0; k < 10; ++k) {
            const double t = 0.5 + 11.5 * static_cast<double>(random.in(0, 1));
            double y = t;
            for (int steps = random.below(3); steps > 0; --steps) {
                y = std::nextafter(y, random.below(2) == 0 ? -1.0 : 20.0);
            }
            points.push_back({t, y});
        }
        const std::vector<int> hull = hullOf(points);
        ASSERT_EQ(faultOfPolygon(hull, points), "") << i;
        corners += static_cast<int>(hull.size());
    }
    EXPECT_GT(corners, 1000);
}

TEST(ConvexHull2, IsExactOnCoordinatesOfVeryDifferentSizes) {
    TestRandom random(3);
    for (int i = 0; i < (testsAreSmall() ? 300 : 3000); ++i) {
        PlanePoints points;
        const int range = 1 + random.below(200);
        const auto coordinate = [&] {
            const auto fraction = static_cast<double>(random.in(-1, 1));
            return std::ldexp(fraction, random.below(range) - range / 2);
        };
        for (int k = 1 + random.below(20); k > 0; --k) {
            const double x = coordinate();
            points.push_back({x, coordinate()});
            // On the line through the origin and an earlier point, where doubling does not round.
            const auto& p =
                points[static_cast<std::size_t>(random.below(static_cast<int>(points.size())))];
            points.push_back({p[0] * 2, p[1] * 2});
        }
        points.push_back({0, 0});
        ASSERT_EQ(faultOfPolygon(hullOf(points), points), "") << i;
    }
}

TEST(ConvexHull2, DoesNotDependOnTheOrderOfThePoints) {
    TestRandom random(4);
    for (int i = 0; i < 300; ++i) {
        PlanePoints points;
        for (int k = 0; k < 20; ++k) {
            const auto x = static_cast<double>(random.below(9));
            points.push_back({x, static_cast<double>(random.below(9))});
        }
        const auto cornersOf = [](const PlanePoints& all) {
            PlanePoints corners;
            for (const int c : hullOf(all)) corners.push_back(all[static_cast<std::size_t>(c)]);
            return corners;
        };
        PlanePoints other = points;
        for (std::size_t k = other.size(); k > 1; --k) {
            std::swap(other[k - 1],
                      other[static_cast<std::size_t>(random.below(static_cast<int>(k)))]);
        }
        EXPECT_EQ(cornersOf(other), cornersOf(points));
    }
}

}  // namespace

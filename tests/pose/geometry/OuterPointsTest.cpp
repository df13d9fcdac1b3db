#include "pose/geometry/OuterPoints.h"

#include <gtest/gtest.h>

#include <limits>

#include "checks/PolygonChecks.h"
#include "tools/TestRandom.h"

using namespace Tesk::pose;

namespace {

std::vector<int> placesOf(const PlanePoints& points) {
    std::vector<int> places;
    for (const std::size_t i :
         hullPlacesOf(points.size(), [&](std::size_t i) { return points[i]; }))
        places.push_back(static_cast<int>(i));
    return places;
}

TEST(OuterPoints, GiveTheHullOfFewAndOfMany) {
    TestRandom random(1);
    for (const int count : {0, 1, 2, 3, 10, 255, 256, 257, 3000, 40000}) {
        for (const bool isRound : {false, true}) {
            PlanePoints points;
            while (points.size() < static_cast<std::size_t>(count)) {
                const auto x = static_cast<double>(random.in(-5.0f, 9.0f));
                const auto y = static_cast<double>(random.in(-5.0f, 3.0f));
                const double length = x * x + y * y;
                if (!isRound || length < 9.0) points.push_back({x, y});
            }
            EXPECT_EQ(faultOfPolygon(placesOf(points), points), "") << count;
        }
    }
}

TEST(OuterPoints, ManyPointsOnAGridAndOnALine) {
    PlanePoints grid;
    PlanePoints line;
    for (int i = 0; i < 100; ++i) {
        for (int k = 0; k < 100; ++k) {
            grid.push_back({static_cast<double>(i), static_cast<double>(k)});
            line.push_back({static_cast<double>(i * k), static_cast<double>(i * k)});
        }
    }
    EXPECT_EQ(placesOf(grid).size(), 4u);
    EXPECT_EQ(faultOfPolygon(placesOf(grid), grid), "");
    EXPECT_EQ(placesOf(line).size(), 2u);
}

TEST(OuterPoints, PointsThatAreNotFiniteAreLeftOut) {
    PlanePoints points(1000, PlanePoint{0.5, 0.5});
    points[3] = {std::numeric_limits<double>::infinity(), 0.0};
    points[4] = {0.0, std::numeric_limits<double>::quiet_NaN()};
    points[5] = {0.0, 0.0};
    points[6] = {1.0, 0.0};
    points[7] = {0.0, 1.0};
    EXPECT_EQ(faultOfPolygon(placesOf(points), points), "");
}

}  // namespace

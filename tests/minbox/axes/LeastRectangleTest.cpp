#include "minbox/axes/LeastRectangle.h"

#include <gtest/gtest.h>

#include <cmath>

#include "TeskDataBasic/Transcendental.h"
#include "tools/TestRandom.h"

using namespace Tesk::minbox;

namespace {

constexpr double kPi = 3.14159265358979323846;

PlanePolygon circle(int corners) {
    PlanePolygon polygon;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2.0 * kPi * i / corners;
        polygon.emplace_back(Tesk::cosine(angle), Tesk::sine(angle));
    }
    return polygon;
}

TEST(WithoutNearCorners, CornersFartherApartStay) {
    const PlanePolygon square = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    EXPECT_EQ(withoutNearCorners(square, 1e-3).size(), 4u);
    EXPECT_EQ(withoutNearCorners(circle(100), 1e-9).size(), 100u);
}

TEST(WithoutNearCorners, OfCornersThatCoincideOneStays) {
    // Each corner of a square is there twice or three times.
    const double e = 1e-10;
    const PlanePolygon square = {{0, e},     {e, 0},     {1 - e, 0}, {1, e},
                                 {1, 1 - e}, {1 - e, 1}, {e, 1},     {0, 1 - e}};
    const PlanePolygon kept = withoutNearCorners(square, 1e-9);
    ASSERT_EQ(kept.size(), 4u);
    for (const UPoint2<double>& p : kept) {
        EXPECT_NEAR(std::fabs(p.x - 0.5), 0.5, 2 * e);
        EXPECT_NEAR(std::fabs(p.y - 0.5), 0.5, 2 * e);
    }
}

TEST(WithoutNearCorners, OnAnEdgeNoneStays) {
    const PlanePolygon bulging = {{0, 0}, {0.3, -1e-10}, {0.6, -1e-10}, {1, 0}, {1, 1}, {0, 1}};
    EXPECT_EQ(withoutNearCorners(bulging, 1e-9).size(), 4u);
}

TEST(WithoutNearCorners, AThinTriangleKeepsItsEnds) {
    const PlanePolygon thin = {{0, 0}, {1, 0}, {0.5, 1e-10}};
    const PlanePolygon kept = withoutNearCorners(thin, 1e-9);
    ASSERT_EQ(kept.size(), 2u);
    EXPECT_EQ(kept[0], (UPoint2<double>(1, 0)));
    EXPECT_EQ(kept[1], (UPoint2<double>(0, 0)));
}

TEST(WithoutNearCorners, ManyLeftOutInARowStayNear) {
    // Every corner lies within the tolerance of the line between its neighbours, but a circle does
    // not go away.
    const int corners = 300'000;
    const double tolerance = 1e-8;
    const PlanePolygon kept = withoutNearCorners(circle(corners), tolerance);
    EXPECT_LT(kept.size(), 100'000u);
    EXPECT_GT(kept.size(), 10'000u);
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const UPoint2<double>& a = kept[i];
        const UPoint2<double>& b = kept[(i + 1) % kept.size()];
        const double sagitta = 1.0 - std::hypot((a.x + b.x) / 2, (a.y + b.y) / 2);
        ASSERT_LE(sagitta, 1.001 * tolerance);
    }
}

TEST(WithoutNearCorners, FewerThanThreeCornersStay) {
    EXPECT_TRUE(withoutNearCorners({}, 1.0).empty());
    EXPECT_EQ(withoutNearCorners({{1, 2}}, 1.0).size(), 1u);
    EXPECT_EQ(withoutNearCorners({{1, 2}, {3, 4}}, 1.0).size(), 2u);
}

/// By a look at all corners for each edge.
std::size_t plainLeastEdge(const PlanePolygon& polygon) {
    std::size_t least = 0;
    double leastArea = -1.0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const UVector2<double> e = polygon[(i + 1) % polygon.size()] - polygon[i];
        double right = 0.0;
        double left = 0.0;
        double top = 0.0;
        for (const UPoint2<double>& p : polygon) {
            const UVector2<double> d = p - polygon[i];
            right = std::max(right, d.x * e.x + d.y * e.y);
            left = std::max(left, d.x * -e.x + d.y * -e.y);
            top = std::max(top, d.x * -e.y + d.y * e.x);
        }
        const double area = (right + left) * top / (e.x * e.x + e.y * e.y);
        if (leastArea < 0.0 || area < leastArea) {
            leastArea = area;
            least = i;
        }
    }
    return least;
}

TEST(LeastRectangleEdge, OfEqualAreasIsTheFirst) {
    EXPECT_EQ(leastRectangleEdge({{0, 0}, {2, 0}, {2, 1}, {0, 1}}), 0u);
    EXPECT_EQ(leastRectangleEdge({{0, 0}, {1, 0}}), 0u);
}

TEST(LeastRectangleEdge, OfATriangleIsItsLongestOrAnEqualOne) {
    // Every rectangle on an edge of an acute triangle has twice its area; an obtuse one needs more
    // on its short edges.
    EXPECT_EQ(leastRectangleEdge({{1, 0}, {3, 4}, {0, 1}}),
              plainLeastEdge({{1, 0}, {3, 4}, {0, 1}}));
    EXPECT_EQ(leastRectangleEdge({{4, 1}, {0, 0}, {10, 0}}), 1u);
}

TEST(LeastRectangleEdge, AgreesWithALookAtAllCorners) {
    TestRandom random(71);
    for (int i = 0; i < 2000; ++i) {
        // An ellipse in any position, with some corners twice but for rounding, and some in line.
        const int corners = 3 + random.below(40);
        const double flat = std::pow(10.0, -static_cast<double>(random.in(0, 8)));
        const double turn = static_cast<double>(random.in(0, 6.3f));
        PlanePolygon polygon;
        for (const UPoint2<double>& p : circle(corners)) {
            if (random.below(4) == 0 && polygon.size() + 4 < static_cast<std::size_t>(corners))
                continue;
            const double x = p.x;
            const double y = p.y * flat;
            polygon.emplace_back(5 + x * Tesk::cosine(turn) - y * Tesk::sine(turn),
                                 x * Tesk::sine(turn) + y * Tesk::cosine(turn) - 3);
        }
        ASSERT_EQ(leastRectangleEdge(polygon), plainLeastEdge(polygon)) << i;
    }
}

TEST(LeastRectangleEdge, IsQuickOnManyCorners) {
    // Would take hours if it looked at all corners for each edge.
    EXPECT_LT(leastRectangleEdge(circle(1'000'000)), 1'000'000u);
}

}  // namespace

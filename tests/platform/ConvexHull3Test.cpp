#include "TeskSDKCommonTools/ConvexHull3.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "checks/HullChecks.h"
#include "shapes/BoxShapes.h"
#include "tools/TestSize.h"

namespace {

gte::ConvexHull3 hullOf(const Points& points) {
    return gte::ConvexHull3(points.data(), static_cast<int>(points.size()), 3);
}

bool areEqual(const gte::ConvexHull3& a, const gte::ConvexHull3& b) {
    const auto edgeIsSame = [](const gte::HullEdge& e, const gte::HullEdge& f) {
        return e.a == f.a && e.b == f.b && e.f0 == f.f0 && e.f1 == f.f1;
    };
    return a.getVertices() == b.getVertices() && a.getTriangles() == b.getTriangles() &&
           std::equal(a.getHullEdges().begin(), a.getHullEdges().end(), b.getHullEdges().begin(),
                      b.getHullEdges().end(), edgeIsSame);
}

Points shuffled(Points points, TestRandom& random) {
    for (std::size_t i = points.size(); i > 1; --i) {
        std::swap(points[i - 1],
                  points[static_cast<std::size_t>(random.below(static_cast<int>(i)))]);
    }
    return points;
}

TEST(ConvexHull3, OfABoxHasEightCornersAndTwelveTriangles) {
    const gte::ConvexHull3 hull = hullOf(boxCorners(2, 3, 4));
    EXPECT_EQ(hull.getDimension(), 3);
    EXPECT_EQ(hull.getVertices().size(), 8u);
    EXPECT_EQ(hull.getTriangles().size(), 12u);
    EXPECT_EQ(hull.getHullEdges().size(), 18u);
}

TEST(ConvexHull3, TrianglesRunCounterClockwiseSeenFromOutside) {
    const gte::ConvexHull3 hull = hullOf(boxCorners(2, 3, 4));
    for (const auto& [a, b, c] : hull.getTriangles()) {
        const auto p = [&](int i) { return hull.getVertices()[static_cast<std::size_t>(i)]; };
        const UVector3<float> normal = (p(b) - p(a)) * (p(c) - p(a));
        EXPECT_GT(normal | (p(a) - UPoint3<float>(1, 1.5f, 2)), 0.0f);
    }
}

TEST(ConvexHull3, OfAFullGridHasOnlyItsCorners) {
    Points points;
    for (int i = 0; i < 6 * 6 * 6; ++i) {
        points.emplace_back(static_cast<float>(i % 6), static_cast<float>(i / 6 % 6),
                            static_cast<float>(i / 36));
    }
    EXPECT_EQ(hullOf(points).getVertices().size(), 8u);
}

TEST(ConvexHull3, IsExactOnEveryComparisonSet) {
    for (const NamedPoints& set : comparisonPoints()) {
        EXPECT_EQ(faultOf(hullOf(set.points), set.points), "") << set.name;
    }
}

TEST(ConvexHull3, IsExactOnNoisyParts) {
    TestRandom random(21);
    for (int i = 0; i < (testsAreSmall() ? 500 : 20000); ++i) {
        const Points points = noisyPart(random);
        ASSERT_EQ(faultOf(hullOf(points), points), "") << i;
    }
}

TEST(ConvexHull3, IsExactOnSmallGridsFullOfTies) {
    TestRandom random(22);
    for (int i = 0; i < (testsAreSmall() ? 500 : 5000); ++i) {
        const int count = 1 + random.below(60);
        const Points points = pointsOnGrid(count, 1 + random.below(6), random);
        ASSERT_EQ(faultOf(hullOf(points), points), "") << i;
    }
}

TEST(ConvexHull3, IsExactOnPlanesLinesAndNeedles) {
    TestRandom random(28);
    for (int i = 0; i < (testsAreSmall() ? 300 : 3000); ++i) {
        const int count = 1 + random.below(40);
        for (const auto make : {pointsInPlane, pointsOnLine, needle}) {
            const Points points = make(count, random);
            ASSERT_EQ(faultOf(hullOf(points), points), "") << i;
            const Points turned = transformed(points, nearlyRightTurn(random));
            ASSERT_EQ(faultOf(hullOf(turned), turned), "") << i;
        }
    }
}

TEST(ConvexHull3, IsExactOnPartsTurnedNearlySquare) {
    TestRandom random(29);
    for (int i = 0; i < (testsAreSmall() ? 200 : 2000); ++i) {
        const Points turned = transformed(noisyPart(random), nearlyRightTurn(random));
        const Points points = transformed(turned, nearlyRightTurn(random));
        ASSERT_EQ(faultOf(hullOf(points), points), "") << i;
    }
}

TEST(ConvexHull3, VerticesOfPointsOnTheGridAreInputPoints) {
    TestRandom random(30);
    for (int i = 0; i < 100; ++i) {
        // Whole numbers of 2^-16 from 0 to 1: many times the grid's step.
        Points points;
        for (int k = 0; k < 30; ++k) {
            UPoint3<float> p;
            for (int axis = 0; axis < 3; ++axis) {
                p[axis] = static_cast<float>(random.below(65537)) * 0x1p-16f;
            }
            points.push_back(p);
        }
        const gte::ConvexHull3 hull = hullOf(points);
        for (const UPoint3<float>& v : hull.getVertices()) {
            EXPECT_NE(std::find(points.begin(), points.end(), v), points.end());
        }
    }
}

TEST(ConvexHull3, VerticesAreAtMostHalfAGridStepFromAPoint) {
    TestRandom random(31);
    int moved = 0;
    for (int i = 0; i < 100; ++i) {
        // The extent is at most 2, and more than 1. Coordinates near zero are off the grid.
        Points points = pointsOnSphere(30, random);
        points.insert(points.end(), {{-0.75f, 0, 0}, {0.75f, 0, 0}});
        const gte::ConvexHull3 hull = hullOf(points);
        for (const UPoint3<float>& v : hull.getVertices()) {
            double nearest = 1.0;
            for (const UPoint3<float>& p : points) {
                const UVector3<double> d = (p - v).As<double>();
                nearest =
                    std::min(nearest, std::max({std::fabs(d.x), std::fabs(d.y), std::fabs(d.z)}));
            }
            ASSERT_LE(nearest, 0x1p-26);
            moved += nearest > 0.0 ? 1 : 0;
        }
    }
    EXPECT_GT(moved, 0);
}

TEST(ConvexHull3, IsExactOnPointsAFloatApart) {
    TestRandom random(23);
    for (int i = 0; i < (testsAreSmall() ? 200 : 2000); ++i) {
        Points points = boxCorners(1, 1, 1);
        for (int k = 0; k < 30; ++k) {
            UPoint3<float> p = points[static_cast<std::size_t>(random.below(8))];
            for (int axis = 0; axis < 3; ++axis) {
                for (int step = random.below(3); step > 0; --step) {
                    p[axis] = std::nextafter(p[axis], random.below(2) == 0 ? -1.0f : 2.0f);
                }
            }
            points.push_back(p);
        }
        ASSERT_EQ(faultOf(hullOf(points), points), "") << i;
    }
}

TEST(ConvexHull3, DoesNotDependOnTheOrderOrRepetitionOfThePoints) {
    TestRandom random(24);
    for (const NamedPoints& set : comparisonPoints()) {
        Points twice = set.points;
        twice.insert(twice.end(), set.points.begin(), set.points.end());
        EXPECT_TRUE(areEqual(hullOf(set.points), hullOf(shuffled(twice, random)))) << set.name;
    }
}

TEST(ConvexHull3, OfAVeryDifferentScaleIsTheSame) {
    TestRandom random(25);
    const Points points = pointsInBall(200, random);
    const gte::ConvexHull3 hull = hullOf(points);
    for (const float scale : {0x1p-100f, 0x1p-30f, 0x1p100f}) {
        Points scaled = points;
        for (UPoint3<float>& p : scaled) p = {p.x * scale, p.y * scale, p.z * scale};
        EXPECT_EQ(hullOf(scaled).getTriangles(), hull.getTriangles());
        EXPECT_EQ(faultOf(hullOf(scaled), scaled), "");
    }
}

TEST(ConvexHull3, FarFromTheOriginVerticesStayInputPoints) {
    const Points points = {{1e9f, 0, 0}, {1e9f + 64, 0, 0}, {1e9f, 1, 0}, {1e9f, 0, 1}};
    const gte::ConvexHull3 hull = hullOf(points);
    EXPECT_EQ(hull.getVertices().size(), 4u);
    for (const UPoint3<float>& v : hull.getVertices()) {
        EXPECT_NE(std::find(points.begin(), points.end(), v), points.end());
    }
}

TEST(ConvexHull3, RoundsAwayNoiseBelowTheGrid) {
    Points points = boxCorners(25, 25, 25);
    for (UPoint3<float>& p : points) {
        if (p.x == 0.0f) p.x = 1e-16f;
    }
    points.emplace_back(-3e-9f, 12.0f, 12.0f);
    const gte::ConvexHull3 hull = hullOf(points);
    EXPECT_EQ(hull.getVertices(), hullOf(boxCorners(25, 25, 25)).getVertices());
}

TEST(ConvexHull3, OfAPlaneCoversThePolygonOnBothSides) {
    const Points square = {{0, 0, 5}, {2, 0, 5}, {2, 2, 5}, {0, 2, 5}, {1, 1, 5}, {1, 0, 5}};
    const gte::ConvexHull3 hull = hullOf(square);
    EXPECT_EQ(hull.getDimension(), 2);
    EXPECT_EQ(hull.getVertices().size(), 4u);
    EXPECT_EQ(hull.getTriangles().size(), 4u);
    EXPECT_EQ(hull.getHullEdges().size(), 6u);
    EXPECT_EQ(faultOf(hull, square), "");
}

TEST(ConvexHull3, OfTurnedPlanesIsFlatOnlyWhereThePointsAreExactlyInAPlane) {
    TestRandom random(26);
    for (int i = 0; i < 200; ++i) {
        Points points;
        for (int k = 0; k < 20; ++k) {
            const auto u = static_cast<float>(random.below(64));
            const auto v = static_cast<float>(random.below(64));
            points.emplace_back(u, v, 2.0f * u - 3.0f * v);
        }
        const gte::ConvexHull3 hull = hullOf(points);
        EXPECT_EQ(hull.getDimension(), 2);
        EXPECT_EQ(faultOf(hull, points), "");
        points[0].z += 0.001f;
        EXPECT_EQ(hullOf(points).getDimension(), 3);
    }
}

TEST(ConvexHull3, OfALineIsItsTwoEnds) {
    const gte::ConvexHull3 hull = hullOf({{1, 1, 1}, {3, 3, 3}, {2, 2, 2}, {3, 3, 3}});
    EXPECT_EQ(hull.getDimension(), 1);
    EXPECT_EQ(hull.getVertices(), (Points{{1, 1, 1}, {3, 3, 3}}));
    EXPECT_TRUE(hull.getTriangles().empty());
    EXPECT_TRUE(hull.getHullEdges().empty());
}

TEST(ConvexHull3, OfALineAlongAnyAxisIsItsTwoEndsWhicheverPointComesFirst) {
    const UVector3<float> directions[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0, 1, -1}, {0, -2, 1}};
    for (const UVector3<float>& d : directions) {
        Points points;
        for (const float t : {0.0f, 3.0f, -2.0f, 1.0f}) {
            points.emplace_back(d.x * t - 8, d.y * t - 8, d.z * t - 8);
        }
        const gte::ConvexHull3 hull = hullOf(points);
        EXPECT_EQ(faultOf(hull, points), "");
        ASSERT_EQ(hull.getVertices().size(), 2u);
        EXPECT_EQ((hull.getVertices()[1] - hull.getVertices()[0]).GetLength(),
                  5.0f * d.GetLength());
    }
}

TEST(ConvexHull3, OfOnePointIsThePoint) {
    const gte::ConvexHull3 hull = hullOf({{1, -2, 3}, {1, -2, 3}});
    EXPECT_EQ(hull.getDimension(), 0);
    EXPECT_EQ(hull.getVertices(), (Points{{1, -2, 3}}));
}

TEST(ConvexHull3, OfNothingIsEmpty) {
    for (const gte::ConvexHull3& hull :
         {gte::ConvexHull3(nullptr, 0, 3), gte::ConvexHull3(nullptr, -4, 3), hullOf({})}) {
        EXPECT_EQ(hull.getDimension(), -1);
        EXPECT_TRUE(hull.getVertices().empty());
        EXPECT_TRUE(hull.getTriangles().empty());
    }
}

TEST(ConvexHull3, LeavesOutPointsThatAreNotFinite) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    Points points = boxCorners(1, 2, 3);
    points.emplace_back(nan, 0.0f, 0.0f);
    points.emplace_back(0.0f, infinity, 0.0f);
    points.emplace_back(0.0f, 0.0f, -infinity);
    EXPECT_TRUE(areEqual(hullOf(points), hullOf(boxCorners(1, 2, 3))));
    EXPECT_EQ(hullOf({{nan, nan, nan}}).getDimension(), -1);
}

TEST(ConvexHull3, OfManyPointsOnASphereKeepsNearlyAll) {
    TestRandom random(27);
    const int count = testsAreSmall() ? 20000 : 1000000;
    const Points points = pointsOnSphere(count, random);
    const gte::ConvexHull3 hull = hullOf(points);
    // Points rounded to floats are not quite on the sphere: some sink below the others.
    EXPECT_GT(hull.getVertices().size(), static_cast<std::size_t>(count) * 8 / 10);
    EXPECT_EQ(faultOfLargeSolid(hull, points), "");
}

}  // namespace

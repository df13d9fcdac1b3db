#include "minbox/edges/EdgeSearch.h"

#include <gtest/gtest.h>

#include <set>

#include "PreparedHull.h"
#include "minbox/edges/DirectionIndex.h"
#include "minbox/edges/EdgeDirections.h"
#include "minbox/edges/OrthogonalTriples.h"

using namespace Tesk::minbox;

namespace {

TEST(DirectionIndex, FindsExactlyTheOrthogonalDirections) {
    TestRandom random(1);
    std::vector<Vector> directions;
    for (int i = 0; i < 300; ++i) {
        // Few whole numbers, so that many pairs are orthogonal; the coordinate axes among them.
        const Vector v{random.below(7) - 3.0, random.below(7) - 3.0, random.below(7) - 3.0};
        if (!(v == Vector())) directions.push_back(v.GetNormal());
    }
    const DirectionIndex index(directions);
    for (const Vector& direction : directions) {
        std::multiset<int> expected;
        for (std::size_t i = 0; i < directions.size(); ++i) {
            if (std::fabs(directions[i] | direction) <= DirectionIndex::kTolerance) {
                expected.insert(static_cast<int>(i));
            }
        }
        std::multiset<int> found;
        index.forEachOrthogonal(direction, [&](int i) { found.insert(i); });
        EXPECT_EQ(found, expected);
    }
}

TEST(DirectionIndex, FindsDirectionsJustInsideTheTolerance) {
    TestRandom random(2);
    std::vector<Vector> directions;
    std::vector<Vector> poles;
    for (int i = 0; i < 2000; ++i) {
        const Points pair = pointsOnSphere(2, random);
        const Vector pole = (pair[0] - UPoint3<float>()).As<double>().GetNormal();
        const Vector other = (pair[1] - UPoint3<float>()).As<double>();
        const Vector across = (pole * other).GetNormal();
        poles.push_back(pole);
        directions.push_back((across + pole * (9e-10 * (i % 2 == 0 ? 1 : -1))).GetNormal());
    }
    const DirectionIndex index(directions);
    for (std::size_t i = 0; i < poles.size(); ++i) {
        bool isFound = false;
        index.forEachOrthogonal(poles[i],
                                [&](int j) { isFound = isFound || j == static_cast<int>(i); });
        EXPECT_TRUE(isFound);
    }
}

TEST(EdgeDirections, ParallelEdgesShareAClassExactly) {
    TestRandom random(3);
    for (const NamedPoints& set : comparisonPoints()) {
        const PreparedHull prepared(set.points);
        const EdgeDirections directions(prepared.hull);
        ASSERT_EQ(directions.edgeCount(),
                  static_cast<int>(prepared.hull.hull().getHullEdges().size()));
        for (int trial = 0; trial < 200; ++trial) {
            const int a = random.below(directions.edgeCount());
            const int b = random.below(directions.edgeCount());
            const Vector cross = directions.vector(a) * directions.vector(b);
            EXPECT_EQ(directions.classOf(a) == directions.classOf(b), cross == Vector())
                << set.name;
            const bool isOrthogonal = (directions.vector(a) | directions.vector(b)) == 0.0;
            EXPECT_EQ(directions.areOrthogonal(directions.classOf(a), directions.classOf(b)),
                      isOrthogonal);
        }
    }
}

TEST(EdgeDirections, EveryEdgeIsListedOnceUnderItsClass) {
    const PreparedHull prepared(prismCorners(12, 2));
    const EdgeDirections directions(prepared.hull);
    std::set<int> seen;
    for (int c = 0; c < directions.classCount(); ++c) {
        for (const int edge : directions.edges(c)) {
            EXPECT_EQ(directions.classOf(edge), c);
            EXPECT_TRUE(seen.insert(edge).second);
        }
    }
    EXPECT_EQ(static_cast<int>(seen.size()), directions.edgeCount());
}

TEST(OrthogonalTriples, OfABoxAreItsThreeDirections) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    const EdgeDirections directions(prepared.hull);
    const DirectionIndex index(directions.units());
    HeightFinder heights(prepared.hull);
    ClassWidths widths(prepared.hull.points(), directions, heights);
    const auto triples =
        findTriples(directions, widths, index, prepared.bound, false, VolumeLimit());
    std::set<std::set<int>> distinct;
    for (const ClassTriple& triple : triples) {
        distinct.insert({triple.classes[0], triple.classes[1], triple.classes[2]});
        EXPECT_LE(triple.volumeBound, 24.0);
        EXPECT_GT(triple.volumeBound, 23.999999);
    }
    EXPECT_EQ(distinct.size(), 1u);
}

TEST(OrthogonalTriples, AreFoundHoweverTheyLieToTheCoordinateAxes) {
    // The edges along (2, 2, −1), (−1, 2, 2) and (2, −1, 2): of no coordinate has one of them more
    // than four ninths.
    Points points = boxCorners(20, 30, 40);
    for (UPoint3<float>& p : points) {
        p = {2 * p.x - p.y + 2 * p.z, 2 * p.x + 2 * p.y - p.z, 2 * p.y - p.x + 2 * p.z};
    }
    const PreparedHull prepared(points);
    const EdgeDirections directions(prepared.hull);
    HeightFinder heights(prepared.hull);
    ClassWidths widths(prepared.hull.points(), directions, heights);
    const DirectionIndex index(directions.units());
    EXPECT_FALSE(
        findTriples(directions, widths, index, prepared.bound, false, VolumeLimit()).empty());
}

TEST(OrthogonalTriples, ThatCannotGiveABoxBelowTheLimitAreLeftOut) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    const EdgeDirections directions(prepared.hull);
    HeightFinder heights(prepared.hull);
    ClassWidths widths(prepared.hull.points(), directions, heights);
    const DirectionIndex index(directions.units());
    VolumeLimit limit;
    limit.lowerTo(25.0);
    EXPECT_FALSE(findTriples(directions, widths, index, prepared.bound, false, limit).empty());
    limit.lowerTo(23.0);
    limit.lowerTo(24.5);  // no way back up
    EXPECT_TRUE(findTriples(directions, widths, index, prepared.bound, false, limit).empty());
}

TEST(EdgeSearch, FindsNothingThatIsNotBelowTheLimit) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    VolumeLimit limit;
    limit.lowerTo(24.0);
    EXPECT_FALSE(searchEdges(prepared.hull, prepared.bound, false, limit));
}

TEST(EdgeSearch, EndsAtOnceWhenAborted) {
    const PreparedHull prepared(prismCorners(100, 2));
    EXPECT_FALSE(searchEdges(prepared.hull, prepared.bound, true, VolumeLimit()));
}

TEST(EdgeSearch, ATurnedBoxIsFoundThoughItsEdgesAreNotOrthogonalExactly) {
    TestRandom random(4);
    int found = 0;
    for (int i = 0; i < 50; ++i) {
        const Points points = transformed(boxCorners(2, 3, 4), randomTurn(random));
        MinBoundingBox calculator;
        EXPECT_NEAR(volumeOf(calculator(countOf(points), points.data())), 24.0, 1e-4);
        const PreparedHull prepared(points);
        found += searchEdges(prepared.hull, prepared.bound, false, VolumeLimit()) ? 1 : 0;
    }
    EXPECT_GT(found, 10) << "those turned by right angles";
}

}  // namespace

#include "minbox/outline/Silhouette.h"

#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "PreparedHull.h"
#include "plain/PlainCaliper.h"
#include "plain/PlainOutline.h"

using namespace Tesk::minbox;

namespace {

/// The outlines along all face normals of a hull.
struct Outlines {
    explicit Outlines(const Points& points)
        : hull(countOf(points), points.data(), startConstants()),
          silhouette(hull, hull.points().count()) {}

    Vector point(int vertex) const { return hull.points()[vertex]; }

    SearchHull hull;
    Silhouette silhouette;
};

TEST(Silhouette, TrianglesSeenEdgeOnCountAsFacingTheDirection) {
    // Along a side of a box four sides are seen edge-on: the outline is the corners of the side
    // that faces away, in its order.
    Outlines box(boxCorners(2, 3, 4));
    for (int face = 0; face < box.hull.faceCount(); ++face) {
        const Vector& normal = box.hull.normal(face);
        const Outline& outline = box.silhouette.along(face);
        ASSERT_EQ(outline.size(), 4u);
        const double height = box.point(outline[0]) | normal;
        for (const int vertex : outline) {
            EXPECT_EQ(box.point(vertex) | normal, height);
            for (int other = 0; other < box.hull.points().count(); ++other) {
                EXPECT_GE(height, box.point(other) | normal);
            }
        }
    }
}

TEST(Silhouette, RunsCounterClockwiseAboutTheDirection) {
    for (const NamedPoints& set : comparisonPoints()) {
        Outlines outlines(set.points);
        for (int face = 0; face < outlines.hull.faceCount(); ++face) {
            const Vector& normal = outlines.hull.normal(face);
            const Outline& outline = outlines.silhouette.along(face);
            for (std::size_t i = 0; i < outline.size(); ++i) {
                const auto p = [&](std::size_t k) {
                    return outlines.point(outline[k % outline.size()]);
                };
                const Vector turn = (p(i + 1) - p(i)) * (p(i + 2) - p(i + 1));
                ASSERT_GT(turn | normal, 0.0) << set.name;
            }
        }
    }
}

TEST(Silhouette, OfEveryFaceIsThatOfTheScanOverAllEdges) {
    TestRandom random(41);
    std::vector<NamedPoints> sets = comparisonPoints();
    for (int i = 0; i < 60; ++i) sets.push_back({"Noisy", noisyPart(random)});
    for (const NamedPoints& set : sets) {
        Outlines outlines(set.points);
        const PlainHull plain(outlines.hull.hull(), countOf(set.points));
        std::vector<int> next(plain.points.size(), 0);
        for (int face = 0; face < outlines.hull.faceCount(); ++face) {
            std::vector<int> expected =
                plainOutline(plain, face, next, static_cast<int>(plain.points.size()));
            plainTidyOutline(plain.points, plain.normals[static_cast<std::size_t>(face)], expected);
            ASSERT_EQ(outlines.silhouette.along(face), expected) << set.name;
        }
    }
}

TEST(Silhouette, ThatMeetsItselfIsThatOfTheScanToo) {
    // No convex hull has such an outline, but rounding may: normals that look away or across at
    // random stand for it.
    TestRandom random(43);
    const Points points = pointsOnSphere(40, random);
    const SearchHull hull = hullOf(points);
    PlainHull plain(hull.hull(), countOf(points));
    std::vector<int> next(plain.points.size(), 0);
    int compared = 0;
    for (int i = 0; i < 200; ++i) {
        for (Vector& normal : plain.normals) {
            normal = random.below(2) == 0 ? Vector(0, 0, -1) : Vector(1, 0, 0);
        }
        plain.normals[0] = Vector(0, 0, 1);
        const HullLinks links(hull.hull(), plain.normals);
        Silhouette silhouette(hull, links, hull.points().count());
        std::vector<int> expected =
            plainOutline(plain, 0, next, static_cast<int>(plain.points.size()));
        plainTidyOutline(plain.points, plain.normals[0], expected);
        ASSERT_EQ(silhouette.along(0), expected);
        compared += expected.size() > 2 ? 1 : 0;
    }
    EXPECT_GT(compared, 100);
}

TEST(Silhouette, OfOneHullDoesNotDependOnTheDirectionBefore) {
    TestRandom random(42);
    const Points points = pointsOnSphere(300, random);
    Outlines used(points);
    for (int face = used.hull.faceCount() - 1; face >= 0; --face) {
        const Outline before = used.silhouette.along(face);
        Silhouette fresh(used.hull, used.hull.points().count());
        ASSERT_EQ(fresh.along(face), before);
    }
}

}  // namespace

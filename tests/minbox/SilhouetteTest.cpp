#include "Silhouette.h"

#include <gtest/gtest.h>

#include "BoxTestSupport.h"
#include "PlainBoxes.h"
#include "SearchHull.h"

namespace {

/// The outlines along all face normals of a hull.
struct Outlines {
    explicit Outlines(const Points& points)
        : impl(1), hull(impl, countOf(points), points.data()), silhouette(impl, hull.normals()) {}

    UVector3<double> point(int vertex) const { return hullPoint(impl, vertex); }

    MinBoundingBoxImpl impl;
    SearchHull hull;
    Silhouette silhouette;
};

TEST(Silhouette, TrianglesSeenEdgeOnCountAsFacingTheDirection) {
    // Along a side of a box four sides are seen edge-on: the outline is the corners of the side
    // that faces away, in its order.
    Outlines box(boxCorners(2, 3, 4));
    for (const Vector& normal : box.hull.normals()) {
        const Outline& outline = box.silhouette.along(normal);
        ASSERT_EQ(outline.size(), 4u);
        const double height = box.point(outline[0]) | normal;
        for (const int vertex : outline) {
            EXPECT_EQ(box.point(vertex) | normal, height);
            for (int other = 0; other < hullVertexCount(box.impl); ++other) {
                EXPECT_GE(height, box.point(other) | normal);
            }
        }
    }
}

TEST(Silhouette, RunsCounterClockwiseAboutTheDirection) {
    for (const NamedPoints& set : comparisonPoints()) {
        Outlines outlines(set.points);
        for (const Vector& normal : outlines.hull.normals()) {
            const Outline& outline = outlines.silhouette.along(normal);
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
        const Plain::Hull plain(outlines.hull.hull());
        for (const Vector& normal : outlines.hull.normals()) {
            std::vector<int> expected = Plain::outlineAlong(plain, normal);
            Plain::removeCollinear(plain, normal, expected);
            ASSERT_EQ(outlines.silhouette.along(normal), expected) << set.name;
        }
    }
}

TEST(Silhouette, OfOneHullDoesNotDependOnTheDirectionBefore) {
    TestRandom random(42);
    const Points points = pointsOnSphere(300, random);
    Outlines used(points);
    for (const Vector& normal : used.hull.normals()) {
        const Outline before = used.silhouette.along(normal);
        Silhouette fresh(used.impl, used.hull.normals());
        ASSERT_EQ(fresh.along(normal), before);
    }
}

}  // namespace

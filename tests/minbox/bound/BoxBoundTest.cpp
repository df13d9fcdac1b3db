#include "minbox/bound/BoxBound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "PreparedHull.h"
#include "minbox/fit/BoxCheck.h"
#include "minbox/fit/FaceWorkspace.h"

using namespace Tesk::minbox;

namespace {

/// The volume of the box on each face that has one, with the face.
std::vector<std::pair<int, double>> volumesOnFaces(const PreparedHull& prepared) {
    FaceWorkspace workspace(prepared.hull, prepared.hull.points().count());
    std::vector<std::pair<int, double>> volumes;
    for (int face = 0; face < prepared.hull.faceCount(); ++face) {
        const Outline& outline = workspace.silhouette.along(face);
        if (outline.size() < 3) continue;
        workspace.calipers.set(prepared.hull.normal(face), outline);
        const CaliperRect rect = workspace.calipers.minRect();
        BoxFrame box = frameOver(rect, workspace.calipers, workspace.heightOver(rect));
        if (checkFrame(prepared.hull.points(), box) == FrameState::kSound)
            volumes.push_back({face, box.volume});
    }
    return volumes;
}

TEST(BoxBound, OfABoxAlongItsSidesIsItsVolume) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    for (const Vector& normal : {Vector(1, 0, 0), Vector(0, -7, 0), Vector(0, 0, 0.01)}) {
        EXPECT_LE(prepared.bound.quickBound(normal), 24.0);
        EXPECT_GT(prepared.bound.quickBound(normal), 24.0 * (1.0 - 1e-6));
        EXPECT_TRUE(prepared.bound.isAbove(23.9999, normal));
        EXPECT_FALSE(prepared.bound.isAbove(24.0, normal));
    }
}

TEST(BoxBound, OfTheSmallestSideAndTheHeightToo) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    const BoxBound sides(prepared.hull, BoxMeasure::kSmallestSide);
    const std::vector<Vector> axes = {{1, 0, 0}, {0, -7, 0}, {0, 0, 0.01}};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        // Two by three, whichever side the box stands on.
        EXPECT_TRUE(sides.isAbove(5.9999, axes[axis]));
        EXPECT_FALSE(sides.isAbove(6.0, axes[axis]));
        const double height = 2.0 + static_cast<double>(axis);
        EXPECT_LE(sides.heightAlong(axes[axis]), height);
        EXPECT_GT(sides.heightAlong(axes[axis]), height - 1e-6);
    }
}

TEST(BoxBound, IsAboveNoInfiniteLimit) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    EXPECT_FALSE(prepared.bound.isAbove(std::numeric_limits<double>::infinity(), {1, 2, 3}));
}

TEST(BoxBound, IsBelowTheBoxOfEveryFace) {
    TestRandom random(9);
    std::vector<NamedPoints> sets = comparisonPoints(/*isSmall=*/true);
    for (int i = 0; i < 40; ++i) {
        const Points part = transformed(bracketCorners(random), randomTurn(random));
        sets.push_back({"bracket", withNoise(part, 1e-4, random)});
        sets.push_back({"thin", transformed(needle(20, random), randomTurn(random))});
    }
    std::size_t compared = 0;
    for (const NamedPoints& set : sets) {
        SCOPED_TRACE(set.name);
        if (!hullOf(set.points).hasFaces()) continue;  // a segment
        const PreparedHull prepared(set.points);
        const auto volumes = volumesOnFaces(prepared);
        for (const auto& [face, volume] : volumes) {
            const Vector& normal = prepared.hull.normal(face);
            ASSERT_LE(prepared.bound.quickBound(normal), volume) << "face " << face;
            for (const double limit : {0.5, 0.99, 1.0 - 1e-7, 1.0, 2.0}) {
                const double bound = prepared.bound.boundAbove(limit * volume, normal);
                ASSERT_LE(bound, volume) << "face " << face << ", limit " << limit;
            }
        }
        compared += volumes.size();
    }
    EXPECT_GT(compared, 2000u);
}

/// On how many faces of a part the bound tells that no box is as small as a part of theirs.
double shareTold(const Points& points, double part) {
    const PreparedHull prepared(points);
    const auto volumes = volumesOnFaces(prepared);
    const auto told = std::count_if(volumes.begin(), volumes.end(), [&](const auto& found) {
        const Vector& normal = prepared.hull.normal(found.first);
        return prepared.bound.isAbove(part * found.second, normal);
    });
    return static_cast<double>(told) / static_cast<double>(volumes.size());
}

TEST(BoxBound, IsCloseToTheBox) {
    TestRandom random(10);
    EXPECT_EQ(shareTold(boxCorners(2, 3, 4), 1.0 - 1e-6), 1.0);
    EXPECT_GT(shareTold(pointsOnSphere(1000, random), 1.0 - 1e-3), 0.99);
    EXPECT_GT(shareTold(roundedBox(30, 20, 10, 2, 8), 0.999), 0.99);
    EXPECT_GT(shareTold(transformed(bracketCorners(random), randomTurn(random)), 0.99), 0.99);
    const UMatrix4<float> turn = UMatrix4<float>::CreateRotateMatrix(0.7f, {1, 2, 3});
    EXPECT_GT(shareTold(transformed(prismCorners(200, 3), turn), 0.999), 0.9);
}

}  // namespace

#include "BoxBound.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "FaceSearch.h"
#include "PreparedHull.h"
#include "SupportMap.h"

namespace {

/// The volume of the box on each face that has one, with the face.
std::vector<std::pair<int, double>> volumesOnFaces(const PreparedHull& prepared) {
    const std::vector<Vector>& normals = prepared.hull.normals();
    Silhouette silhouette(prepared.impl, normals, prepared.hull.links());
    Calipers calipers(prepared.impl);
    HeightFinder heights(prepared.impl, prepared.hull.links());
    std::vector<std::pair<int, double>> volumes;
    for (int face = 0; face < prepared.hull.faceCount(); ++face) {
        const Vector& normal = normals[static_cast<std::size_t>(face)];
        const Outline& outline = silhouette.along(face);
        if (outline.size() < 3) continue;
        calipers.set(normal, outline);
        const CaliperRect rect = calipers.minRect();
        const Vector& base = calipers.point(rect.support[CaliperRect::kBase]);
        VolumeCandidate box;
        layOver(prepared.impl, rect, calipers, normal, heights.rangeAlong(base, normal), box);
        if (secure(prepared.impl, box) == FrameState::kSound) volumes.push_back({face, box.volume});
    }
    return volumes;
}

std::vector<Vector> someDirections(TestRandom& random) {
    std::vector<Vector> directions = {{1, 0, 0}, {0, -2, 0}, {0, 0, 1}, {1, 1, 0}, {-1, 1, 1}};
    for (const UPoint3<float>& p : pointsOnSphere(200, random)) {
        directions.emplace_back(3.0 * p.x, 3.0 * p.y, 3.0 * p.z);
    }
    return directions;
}

Vector nearlyAcross(const SupportMap& supports, const Vector& direction) {
    Vector across;
    supports.nearlyAcross({&direction, 1}, &across);
    return across;
}

TEST(SupportMap, FindsTheWidthAlongAnyDirection) {
    TestRandom random(3);
    const std::vector<Points> parts = {boxCorners(2, 3, 4), pointsOnSphere(3000, random),
                                       transformed(needle(20, random), randomTurn(random)),
                                       roundedBox(30, 20, 10, 2, 8)};
    for (std::size_t part = 0; part < parts.size(); ++part) {
        SCOPED_TRACE(part);
        const PreparedHull prepared(parts[part]);
        const SupportMap supports(prepared.impl, prepared.hull.links());
        const Vector origin = hullPoint(prepared.impl, 0);
        for (const Vector& direction : someDirections(random)) {
            const double width = rangeAlong(prepared.impl, origin, direction).length();
            const double rounding = 1e-13 * 100.0 * direction.GetLength();
            EXPECT_NEAR(supports.across(direction) | direction, width, rounding);
            EXPECT_NEAR(supports.across(direction * -1.0) | direction, -width, rounding);
            EXPECT_LE(nearlyAcross(supports, direction) | direction, width + rounding);
        }
    }
}

TEST(SupportMap, NearlyFindsTheWidthOfARoundPart) {
    TestRandom random(4);
    const PreparedHull prepared(pointsOnSphere(3000, random));
    const SupportMap supports(prepared.impl, prepared.hull.links());
    for (const Vector& direction : someDirections(random)) {
        const double width = supports.across(direction) | direction;
        EXPECT_GT(nearlyAcross(supports, direction) | direction, width * (1.0 - 1e-3));
    }
}

TEST(BoxBound, OfABoxAlongItsSidesIsItsVolume) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    for (const Vector& normal : {Vector(1, 0, 0), Vector(0, -7, 0), Vector(0, 0, 0.01)}) {
        EXPECT_LE(prepared.bound.roughly(normal), 24.0);
        EXPECT_GT(prepared.bound.roughly(normal), 24.0 * (1.0 - 1e-6));
        EXPECT_TRUE(prepared.bound.isAbove(23.9999, normal));
        EXPECT_FALSE(prepared.bound.isAbove(24.0, normal));
    }
}

TEST(BoxBound, OfTheSmallestSideAndTheHeightToo) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    const BoxBound sides(prepared.impl, prepared.hull, BoxMeasure::kSmallestSide);
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
        const PreparedHull prepared(set.points);
        const auto volumes = volumesOnFaces(prepared);
        for (const auto& [face, volume] : volumes) {
            const Vector& normal = prepared.hull.normals()[static_cast<std::size_t>(face)];
            ASSERT_LE(prepared.bound.roughly(normal), volume) << "face " << face;
            for (const double limit : {0.5, 0.99, 1.0 - 1e-7, 1.0, 2.0}) {
                const double bound = prepared.bound.against(limit * volume, normal);
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
        const Vector& normal = prepared.hull.normals()[static_cast<std::size_t>(found.first)];
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

TEST(FaceSearch, TellsTheOthersOfWhatItFindsAndPassesOverWhatIsWorse) {
    const PreparedHull prepared(boxCorners(2, 3, 4));
    VolumeLimit limit;
    int steps = 0;
    const auto bestOf = [&] {
        FaceSearch search(prepared.impl, prepared.hull, prepared.bound, limit);
        std::vector<FaceSearch::Worker> workers;
        workers.emplace_back(search);
        workers[0].run([&] {
            ++steps;
            return true;
        });
        return search.best(workers, std::vector<FaceRange>{{0, 12}});
    };
    EXPECT_EQ(bestOf().volume, 24.0);
    EXPECT_EQ(limit.get(), 24.0);
    EXPECT_EQ(steps, 12);
    limit.lowerTo(20.0);  // as if another thread had found less
    EXPECT_EQ(bestOf().volume, -1.0);
    EXPECT_EQ(steps, 24) << "progress counts the faces passed over, too";
}

TEST(FaceSearch, IsSharedByWorkersWithoutOverlap) {
    TestRandom random(11);
    const PreparedHull prepared(pointsOnSphere(300, random));
    VolumeLimit limit;
    FaceSearch search(prepared.impl, prepared.hull, prepared.bound, limit);
    std::vector<FaceSearch::Worker> workers;
    for (int i = 0; i < 3; ++i) workers.emplace_back(search);
    int steps = 0;
    // The first leaves after a few, the others share the rest.
    workers[0].run([&] { return ++steps < 20; });
    for (FaceSearch::Worker& worker : workers) {
        worker.run([&] {
            ++steps;
            return true;
        });
    }
    EXPECT_LE(steps, prepared.hull.faceCount());
    EXPECT_GT(steps, prepared.hull.faceCount() - 8) << "but for the few that the first had taken";
}

}  // namespace

#include "orient/sampling/HittableTriangles.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "orient/turn/Flatten.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/TestRandom.h"

using namespace Tesk::orient;

namespace {

using Direction = UVector3<float>;

struct Found {
    std::array<TurnedPart, kGroupSize> parts;
    std::array<SampleGrid, kGroupSize> grids;
    HittableTriangles triangles;
};

Found findAll(const FlatMesh& mesh, const std::vector<Direction>& directions) {
    Found found;
    const auto parts = std::span(found.parts).first(directions.size());
    turnParts(mesh, directions, 0.0f, parts);
    for (std::size_t k = 0; k < directions.size(); ++k) {
        found.grids[k] = makeSampleGrid(parts[k].box);
    }
    HittableFinder().find(mesh, parts, found.grids, found.triangles);
    return found;
}

/// Whether a triangle's rectangle holds a sample point.
bool holdsSample(const FlatMesh& mesh, std::size_t triangle, const TurnedPart& part,
                 const SampleGrid& grid) {
    const auto& [a, b, c] = mesh.corners[triangle];
    const UPoint3<float> p = part.point(mesh, a);
    const UPoint3<float> q = part.point(mesh, b);
    const UPoint3<float> r = part.point(mesh, c);
    const auto [lowX, highX] = std::minmax({p.x, q.x, r.x});
    const auto [lowY, highY] = std::minmax({p.y, q.y, r.y});
    return grid.columns.countBelow(lowX) < grid.columns.countUpTo(highX) &&
           grid.rows.countBelow(lowY) < grid.rows.countUpTo(highY);
}

void expectNoneMissed(const Part& part, const std::vector<Direction>& directions) {
    const MeshKernel kernel = part.kernel();
    const FlatMesh mesh = flatten(*kernel.getMesh(), kernel.getMatrix());
    const Found found = findAll(mesh, directions);
    for (std::size_t k = 0; k < directions.size(); ++k) {
        const std::vector<std::int32_t>& triangles = found.triangles[k];
        EXPECT_TRUE(std::is_sorted(triangles.begin(), triangles.end()));
        for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
            if (!holdsSample(mesh, i, found.parts[k], found.grids[k])) continue;
            ASSERT_TRUE(std::binary_search(triangles.begin(), triangles.end(),
                                           static_cast<std::int32_t>(i)))
                << k << ": " << i;
        }
    }
}

TEST(HittableTriangles, NoneIsMissed) {
    const std::vector<Direction> directions = {{0, 0, 1}, {1, 2, 3}, {0, 1, 1}, {-3, 1, -2}};
    expectNoneMissed(makeSphere(30.0f, 20'000), directions);
    expectNoneMissed(makeBracket(30, 20, 4, 12), directions);
    expectNoneMissed(makeGear(11, 20, 5), directions);
    expectNoneMissed(makeBox({5000, 5000, 5000}, {5001, 5002, 5003}), directions);
    expectNoneMissed(makeBox({0, 0, 0}, {3000, 1, 1}), directions);
}

TEST(HittableTriangles, ATinyOneAroundASampleIsNotMissed) {
    // All its corners are so near the sample that rounding could decide, in both coordinates.
    const Part box = makeBox({0, 0, 0}, {30, 20, 10});
    const MeshKernel kernel = box.kernel();
    const FlatMesh flat = flatten(*kernel.getMesh(), kernel.getMatrix());
    const Found found = findAll(flat, {{0, 0, 1}});
    const SampleGrid& grid = found.grids[0];
    for (std::size_t i = 1; i < grid.columns.size(); i += 7) {
        const float x = grid.columns[i];
        const float y = grid.rows[i % grid.rows.size()];
        if (x < 1 || x > 29 || y < 1 || y > 19) continue;
        Part part = box;
        const auto corner = [&](float dx, float dy) {
            return part.add({x * (1 + dx * 0x1p-23f), y * (1 + dy * 0x1p-23f), 5});
        };
        part.triangles.push_back({corner(-1, -1), corner(1, -1), corner(0, 1)});
        expectNoneMissed(part, {{0, 0, 1}});
    }
}

TEST(HittableTriangles, OfAFineMeshAlmostNoOtherIsFound) {
    const MeshKernel kernel = makeSphere(30.0f, 200'000).kernel();
    const FlatMesh mesh = flatten(*kernel.getMesh(), kernel.getMatrix());
    const Found found = findAll(mesh, {{0, 0, 1}, {1, 2, 3}});
    for (std::size_t k = 0; k < 2; ++k) {
        std::size_t holding = 0;
        for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
            holding += holdsSample(mesh, i, found.parts[k], found.grids[k]) ? 1 : 0;
        }
        EXPECT_LT(found.triangles[k].size(), holding + mesh.corners.size() / 50);
    }
}

TEST(HittableTriangles, AGroupMayBeSmallerThanItsRoom) {
    const MeshKernel kernel = makeBracket(30, 20, 4, 12).kernel();
    const FlatMesh mesh = flatten(*kernel.getMesh(), kernel.getMatrix());
    const std::vector<Direction> directions = {{1, 2, 3}, {0, 0, 1}, {0, 1, 1}, {-3, 1, -2}};
    const Found all = findAll(mesh, directions);
    for (std::size_t count = 1; count < kGroupSize; ++count) {
        const Found some =
            findAll(mesh, {directions.begin(), directions.begin() + static_cast<int>(count)});
        for (std::size_t k = 0; k < count; ++k) EXPECT_EQ(some.triangles[k], all.triangles[k]);
    }
}

TEST(HittableTriangles, WithoutSamplesThereAreNone) {
    const MeshKernel kernel = makeBox({0, 0, 0}, {1, 2, 3}).kernel();
    const FlatMesh mesh = flatten(*kernel.getMesh(), kernel.getMatrix());
    Found found;
    const std::vector<Direction> directions = {{0, 0, 1}};
    const auto parts = std::span(found.parts).first(1);
    turnParts(mesh, directions, 0.0f, parts);
    found.triangles[0] = {1, 2, 3};
    HittableFinder().find(mesh, parts, found.grids, found.triangles);
    EXPECT_TRUE(found.triangles[0].empty());
}

}  // namespace

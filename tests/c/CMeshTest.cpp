#include <gtest/gtest.h>

#include <array>

#include "HostSide.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

struct Copied {
    std::vector<UPoint3<float>> positions;
    std::vector<Part::Corners> triangles;
};

Copied copiedOut(const tesk_mesh* mesh) {
    std::int64_t positions = -1;
    std::int64_t triangles = -1;
    EXPECT_EQ(tesk_mesh_counts(mesh, &positions, &triangles), TESK_OK);
    Copied copied{std::vector<UPoint3<float>>(static_cast<std::size_t>(positions)),
                  std::vector<Part::Corners>(static_cast<std::size_t>(triangles))};
    // There may be none, and so nothing to name a member of.
    auto* const xyz = reinterpret_cast<float*>(copied.positions.data());
    auto* const corners = reinterpret_cast<std::int32_t*>(copied.triangles.data());
    EXPECT_EQ(tesk_mesh_copy_positions(mesh, xyz, positions), TESK_OK);
    EXPECT_EQ(tesk_mesh_copy_triangles(mesh, corners, triangles), TESK_OK);
    return copied;
}

void expectSameMesh(const tesk_mesh* mesh, const Part& part) {
    const Copied copied = copiedOut(mesh);
    EXPECT_EQ(copied.positions, part.positions);
    EXPECT_EQ(copied.triangles, part.triangles);
}

TEST(CMeshes, WhatGoesInComesOutUnplaced) {
    const Part part = makeRandomAssembly(1);
    expectSameMesh(meshOf(part, placements().back().matrix).get(), part);
    expectSameMesh(meshOf({}).get(), {});
}

TEST(CMeshes, ElementsMayLieApartAtAnyAddress) {
    const Part part = makeBracket(30, 40, 5, 12);
    constexpr std::size_t kPositionStride = 3 * sizeof(double) + 5;
    constexpr std::size_t kTriangleStride = 3 * sizeof(std::int32_t) + 3;
    std::vector<unsigned char> positions(1 + part.positions.size() * kPositionStride);
    std::vector<unsigned char> triangles(1 + part.triangles.size() * kTriangleStride);
    for (std::size_t i = 0; i < part.positions.size(); ++i) {
        const auto& [x, y, z] = part.positions[i];
        const std::array xyz = {static_cast<double>(x), static_cast<double>(y),
                                static_cast<double>(z)};
        std::memcpy(&positions[1 + i * kPositionStride], xyz.data(), sizeof xyz);
    }
    for (std::size_t i = 0; i < part.triangles.size(); ++i) {
        std::memcpy(&triangles[1 + i * kTriangleStride], part.triangles[i].data(),
                    sizeof part.triangles[i]);
    }
    tesk_mesh_arrays arrays = arraysOf(part);
    arrays.position_type = TESK_FLOAT64;
    arrays.positions = &positions[1];
    arrays.position_stride = kPositionStride;
    arrays.triangles = &triangles[1];
    arrays.triangle_stride = kTriangleStride;
    tesk_mesh* mesh = nullptr;
    ASSERT_EQ(tesk_mesh_create(&arrays, &mesh), TESK_OK);
    const MeshHandle owner(mesh);
    expectSameMesh(mesh, part);
}

TEST(CMeshes, DoublesAreRoundedToTheNearestFloat) {
    const std::array<double, 3> xyz = {0.1, 1.0 + 0x1p-30, -1e300};
    auto arrays = sized<tesk_mesh_arrays>();
    arrays.position_type = TESK_FLOAT64;
    arrays.positions = xyz.data();
    arrays.position_count = 1;
    tesk_mesh* mesh = nullptr;
    ASSERT_EQ(tesk_mesh_create(&arrays, &mesh), TESK_OK);
    const MeshHandle owner(mesh);
    float rounded[3];
    ASSERT_EQ(tesk_mesh_copy_positions(mesh, rounded, 1), TESK_OK);
    EXPECT_EQ(rounded[0], 0.1f);
    EXPECT_EQ(rounded[1], 1.0f);
    EXPECT_TRUE(std::isinf(rounded[2]));
}

TEST(CMeshes, TheHostsArraysAreItsOwnAgainAfterTheCall) {
    Part part = makeBox({0, 0, 0}, {1, 2, 3});
    const Part before = part;
    const MeshHandle mesh = meshOf(part);
    part.positions[0].x = 99.0f;
    part.triangles[0] = {7, 7, 7};
    expectSameMesh(mesh.get(), before);
}

TEST(CMeshes, MoreRoomThanNeededIsLeftAlone) {
    const MeshHandle mesh = meshOf(makeBox({0, 0, 0}, {1, 2, 3}));
    std::vector<float> positions(8 * 3 + 1, 77.0f);
    std::vector<std::int32_t> triangles(12 * 3 + 1, 77);
    ASSERT_EQ(tesk_mesh_copy_positions(mesh.get(), positions.data(), 1000), TESK_OK);
    ASSERT_EQ(tesk_mesh_copy_triangles(mesh.get(), triangles.data(), 1000), TESK_OK);
    EXPECT_EQ(positions.back(), 77.0f);
    EXPECT_EQ(triangles.back(), 77);
}

TEST(CMeshes, APlacementCanBeReplaced) {
    const Part part = makeBracket(30, 40, 5, 12);
    const UMatrix4<float> placement = placements().back().matrix;
    float matrix[16];
    copyTo(matrix, placement);
    const MeshHandle replaced = meshOf(part);
    ASSERT_EQ(tesk_mesh_set_placement(replaced.get(), matrix), TESK_OK);
    float a[16];
    float b[16];
    ASSERT_EQ(tesk_lay_flat(replaced.get(), nullptr, a), TESK_OK);
    ASSERT_EQ(tesk_lay_flat(meshOf(part, placement).get(), nullptr, b), TESK_OK);
    EXPECT_EQ(std::memcmp(a, b, sizeof a), 0);
    ASSERT_EQ(tesk_lay_flat(meshOf(part).get(), nullptr, b), TESK_OK);
    EXPECT_NE(std::memcmp(a, b, sizeof a), 0);
}

TEST(CMeshes, MatricesMayLieAtAnyAddress) {
    const Part part = makeBracket(30, 40, 5, 12);
    const UMatrix4<float> placement = placements().back().matrix;
    std::array<unsigned char, sizeof(float) * 16 + 1> bytes{};
    float matrix[16];
    copyTo(matrix, placement);
    std::memcpy(&bytes[1], matrix, sizeof matrix);
    const MeshHandle mesh = meshOf(part);
    auto* const unaligned = reinterpret_cast<float*>(&bytes[1]);
    ASSERT_EQ(tesk_mesh_set_placement(mesh.get(), unaligned), TESK_OK);
    float flat[16];
    ASSERT_EQ(tesk_lay_flat(mesh.get(), nullptr, flat), TESK_OK);
    ASSERT_EQ(tesk_lay_flat(mesh.get(), nullptr, unaligned), TESK_OK);
    EXPECT_EQ(std::memcmp(&bytes[1], flat, sizeof flat), 0);
}

TEST(CMeshes, NothingIsFreedForNull) {
    tesk_free(nullptr);
}

}  // namespace

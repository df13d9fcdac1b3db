#include <gtest/gtest.h>

#include <limits>

#include "HostSide.h"
#include "MinBoundingBox.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "shapes/BoxShapes.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

constexpr UVector3<float> kAxis(1.0f, 2.0f, 3.0f);

OrientedBox3 boxInCpp(const Part& part, int criterion) {
    const int n = static_cast<int>(part.positions.size());
    const UPoint3<float>* points = part.positions.data();
    MinBoundingBox search(2);
    switch (criterion) {
        case TESK_BOX_VOLUME:
            return search(n, points);
        case TESK_BOX_BASE_AREA:
            return search.minBaseAreaBox(n, points);
        case TESK_BOX_BASE_HEIGHT:
            return search.minBaseAreaAndHeightBox(n, points);
        case TESK_BOX_AROUND_AXIS:
            return search.minBaseAreaBoxAroundAxis(n, points, kAxis);
        default:
            return MinBoundingBox::generateOBB(points, n);
    }
}

void expectSameBox(const tesk_box& box, const OrientedBox3& expected, float half) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(sameBits(box.center[i], expected.center[i]));
        EXPECT_TRUE(sameBits(box.half_extents[i], expected.extent[i] * half));
        for (int k = 0; k < 3; ++k) {
            EXPECT_TRUE(sameBits(box.axes[i][k], expected.axis[i][k]));
        }
    }
}

std::vector<Part> shapes() {
    std::vector<Part> parts = {makeBox({0, 0, 0}, {2, 3, 4}), makeBracket(30, 40, 5, 12),
                               makeGear(12, 20.0f, 4.0f), makeSphere(7.0f, 200),
                               makeRandomAssembly(3)};
    for (Part& part : parts) part = part.placed(placements().back().matrix);
    return parts;
}

TEST(CBoxes, EveryCriterionGivesTheBitsOfTheCppInterface) {
    const float axis[3] = {kAxis.x, kAxis.y, kAxis.z};
    for (const Part& part : shapes()) {
        const tesk_points points = pointsOf(part);
        for (int criterion = TESK_BOX_VOLUME; criterion <= TESK_BOX_PRINCIPAL; ++criterion) {
            for (const int threads : {0, 1, 3}) {
                const tesk_call call = callOn(threads);
                auto box = sized<tesk_box>();
                ASSERT_EQ(tesk_smallest_box(&points, criterion, axis, &call, &box), TESK_OK);
                EXPECT_EQ(box.struct_size, sizeof box);
                const float half = criterion == TESK_BOX_PRINCIPAL ? 0.5f : 1.0f;
                expectSameBox(box, boxInCpp(part, criterion), half);
            }
        }
    }
}

TEST(CBoxes, WithoutAFinitePointThereIsNoBoxAndNothingIsWritten) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float xyz[6] = {nan, 0, 0, 0, nan, 0};
    const float axis[3] = {0, 0, 1};
    auto points = sized<tesk_points>();
    points.data = xyz;
    for (const int count : {0, 1, 2}) {
        points.count = count;
        for (int criterion = TESK_BOX_VOLUME; criterion <= TESK_BOX_PRINCIPAL; ++criterion) {
            auto box = sized<tesk_box>();
            box.center[0] = 77.0f;
            EXPECT_EQ(tesk_smallest_box(&points, criterion, axis, nullptr, &box), TESK_NO_RESULT);
            EXPECT_EQ(box.center[0], 77.0f);
            EXPECT_EQ(lastError(), "there is no such box");
        }
    }
}

TEST(CBoxes, OneFinitePointIsEnough) {
    const float xyz[3] = {1, 2, 3};
    auto points = sized<tesk_points>();
    points.data = xyz;
    points.count = 1;
    auto box = sized<tesk_box>();
    ASSERT_EQ(tesk_smallest_box(&points, TESK_BOX_VOLUME, nullptr, nullptr, &box), TESK_OK);
    EXPECT_EQ(box.center[1], 2.0f);
    EXPECT_EQ(box.half_extents[2], 0.0f);
}

TEST(CBoxes, TheHullIsThatOfTheCppInterface) {
    for (const Part& part : shapes()) {
        const tesk_points points = pointsOf(part);
        tesk_mesh* hull = nullptr;
        std::int32_t dimension = -2;
        ASSERT_EQ(tesk_convex_hull(&points, &hull, &dimension), TESK_OK);
        const MeshHandle owner(hull);
        const gte::ConvexHull3 expected(part.positions.data(),
                                        static_cast<int>(part.positions.size()), 3);
        EXPECT_EQ(dimension, expected.getDimension());
        std::int64_t vertices = 0;
        std::int64_t triangles = 0;
        ASSERT_EQ(tesk_mesh_counts(hull, &vertices, &triangles), TESK_OK);
        ASSERT_EQ(static_cast<std::size_t>(vertices), expected.getVertices().size());
        ASSERT_EQ(static_cast<std::size_t>(triangles), expected.getTriangles().size());
        std::vector<UPoint3<float>> positions(static_cast<std::size_t>(vertices));
        std::vector<Part::Corners> corners(static_cast<std::size_t>(triangles));
        ASSERT_EQ(tesk_mesh_copy_positions(hull, &positions[0].x, vertices), TESK_OK);
        ASSERT_EQ(tesk_mesh_copy_triangles(hull, corners[0].data(), triangles), TESK_OK);
        EXPECT_TRUE(std::equal(corners.begin(), corners.end(), expected.getTriangles().begin()));
        for (std::size_t i = 0; i < positions.size(); ++i) {
            EXPECT_EQ(positions[i], expected.getVertices()[i]);
        }
    }
}

TEST(CBoxes, HullsOfFewPointsSayTheirDimension) {
    const float xyz[12] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    auto points = sized<tesk_points>();
    points.data = xyz;
    for (const int count : {0, 1, 2, 3, 4}) {
        points.count = count;
        tesk_mesh* hull = nullptr;
        std::int32_t dimension = 99;
        ASSERT_EQ(tesk_convex_hull(&points, &hull, &dimension), TESK_OK);
        const MeshHandle owner(hull);
        EXPECT_EQ(dimension, count - 1);
        ASSERT_EQ(tesk_convex_hull(&points, &hull, nullptr), TESK_OK);
        tesk_free(hull);
    }
}

}  // namespace

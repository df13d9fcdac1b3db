#include "orient/candidates/DirectionKey.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>

#include "plain/PlainCandidates.h"
#include "tools/TestRandom.h"

using namespace Tesk::orient;

namespace {

using Direction = UVector3<float>;

/// The cell index of one component: with the others zero, the key of x is the index itself.
std::int64_t cellOf(float component) {
    return directionKey({component, 0.0f, 0.0f});
}

TEST(DirectionKey, TheGridIsLopsided) {
    EXPECT_EQ(cellOf(0.0f), 0);
    EXPECT_EQ(cellOf(0.01f), 0);
    EXPECT_EQ(cellOf(0.02f), 1);
    EXPECT_EQ(cellOf(-0.04f), 0);
    EXPECT_EQ(cellOf(-0.05f), -1);
    EXPECT_EQ(cellOf(0.70710677f), 24);
    EXPECT_EQ(cellOf(-0.70710677f), -23);
    EXPECT_EQ(cellOf(1.0f), 33);
    EXPECT_EQ(cellOf(-1.0f), -32);
}

TEST(DirectionKey, CellZeroSpansFromMinus44To14Thousandths) {
    EXPECT_EQ(cellOf(-0.0449f), 0);
    EXPECT_EQ(cellOf(-0.0451f), -1);
    EXPECT_EQ(cellOf(0.0149f), 0);
    EXPECT_EQ(cellOf(0.0151f), 1);
    EXPECT_EQ(cellOf(0.0449f), 1);
    EXPECT_EQ(cellOf(0.0451f), 2);
    EXPECT_EQ(cellOf(-0.0749f), -1);
    EXPECT_EQ(cellOf(-0.0751f), -2);
}

TEST(DirectionKey, DownAndUpHaveTheirKnownKeys) {
    EXPECT_EQ(directionKey({0, 0, -1}), -33554432);
    EXPECT_EQ(directionKey({0, 0, 1}), 34603008);
    EXPECT_EQ(directionKey({0, 1, 0}), 33 * 1024);
}

TEST(DirectionKey, ADirectionNearUpSharesItsCell) {
    EXPECT_EQ(directionKey({0.01f, -0.04f, 0.999f}), directionKey({0, 0, 1}));
}

TEST(DirectionKey, TwoNormalsOnBothSidesOfACellsEndFallIntoDifferentCells) {
    EXPECT_NE(directionKey({0.02f, 0.0f, 0.9998f}), directionKey({0.01f, 0.0f, 0.99995f}));
}

TEST(DirectionKey, TheProductIsSinglePrecision) {
    // Just below the end of a cell the true product lies below it, and the float product on it.
    int found = 0;
    for (int cell = 1; cell <= 33; ++cell) {
        const float end = static_cast<float>(30 * cell - 15);
        const float c = std::nextafter(end / 1000.0f, 0.0f);
        for (const float near : {c, end / 1000.0f}) {
            if (!(static_cast<double>(near) * 1000.0 < static_cast<double>(end))) continue;
            if (near * 1000.0f != end) continue;
            EXPECT_EQ(cellOf(near), cell);
            ++found;
        }
    }
    EXPECT_GT(found, 3);
}

TEST(DirectionKey, AgreesWithThePlainVersionOnUnitVectors) {
    TestRandom random(1);
    for (int i = 0; i < 200000; ++i) {
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        const Direction d = Direction(x, y, random.in(-1.0f, 1.0f)).GetNormal();
        ASSERT_EQ(directionKey(d), plainDirectionKey(d));
    }
}

TEST(DirectionKey, IsOneToOneOnTheCellsOfUnitVectors) {
    std::map<std::int64_t, std::array<std::int64_t, 3>> cells;
    TestRandom random(2);
    for (int i = 0; i < 100000; ++i) {
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        const Direction d = Direction(x, y, random.in(-1.0f, 1.0f)).GetNormal();
        const std::array cell = {cellOf(d.x), cellOf(d.y), cellOf(d.z)};
        const auto [entry, isNew] = cells.try_emplace(directionKey(d), cell);
        ASSERT_EQ(entry->second, cell);
    }
    EXPECT_GT(cells.size(), 5000u);
}

TEST(DirectionKey, AnyFloatHasAKey) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(cellOf(nan), 0);
    EXPECT_EQ(cellOf(infinity), std::numeric_limits<std::int64_t>::max() / 30);
    EXPECT_EQ(cellOf(-infinity), (std::numeric_limits<std::int64_t>::min() + 15) / 30);
    for (const float c : {9.2e15f, -9.2e15f, 9.3e15f, -9.3e15f, 1e38f, -1e38f, nan, infinity}) {
        const Direction d(c, -c, c);
        EXPECT_EQ(directionKey(d), plainDirectionKey(d));
    }
}

}  // namespace

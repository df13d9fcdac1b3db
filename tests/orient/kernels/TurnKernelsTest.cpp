#include "orient/kernels/TurnKernels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "orient/grid/SampleGrid.h"
#include "tools/FloatBits.h"
#include "tools/TestRandom.h"

using namespace Tesk::orient;

namespace {

struct Vertices {
    std::vector<float> x, y, z;
};

Vertices randomVertices(std::size_t count, float size, TestRandom& random) {
    Vertices v;
    for (std::size_t i = 0; i < count; ++i) {
        v.x.push_back(random.in(-size, size));
        v.y.push_back(random.in(-size, size));
        v.z.push_back(random.in(-size, size));
    }
    return v;
}

TurnedCoordinate randomCoordinate(TestRandom& random) {
    TurnedCoordinate c;
    c.fromX = random.in(-1, 1);
    c.fromY = random.in(-1, 1);
    c.fromZ = random.in(-1, 1);
    c.shift = random.in(-5, 5);
    return c;
}

float unshifted(const Vertices& v, std::size_t i, const TurnedCoordinate& c) {
    return v.x[i] * c.fromX + v.y[i] * c.fromY + v.z[i] * c.fromZ;
}

class EachWidth : public testing::TestWithParam<const TurnKernels*> {
 protected:
    const TurnKernels& m_kernels = *GetParam();
};

TEST_P(EachWidth, ARangeHoldsAllPointsAndIsTouchedAtBothEnds) {
    TestRandom random(51);
    for (std::size_t count = 0; count < 70; ++count) {
        Vertices v = randomVertices(count, 10, random);
        if (count > 3) v.y[count / 2] = std::nanf("");
        const TurnedCoordinate c = randomCoordinate(random);
        CoordinateRange expected;
        for (std::size_t i = 0; i < count; ++i) {
            const float sum = unshifted(v, i, c);
            if (sum < expected.low) expected.low = sum;
            if (sum > expected.high) expected.high = sum;
        }
        CoordinateRange range;
        m_kernels.extendRange(v.x.data(), v.y.data(), v.z.data(), count, c, range);
        EXPECT_TRUE(sameBits(range.low, expected.low)) << count;
        EXPECT_TRUE(sameBits(range.high, expected.high)) << count;
        // A second part of the same points changes nothing.
        m_kernels.extendRange(v.x.data(), v.y.data(), v.z.data(), count / 2, c, range);
        EXPECT_TRUE(sameBits(range.low, expected.low)) << count;
    }
}

TEST_P(EachWidth, CodesTellTheSamplesApartAndAreOddBesideThem) {
    TestRandom random(52);
    for (int repeat = 0; repeat < 200; ++repeat) {
        const float offset = repeat % 3 == 0 ? random.in(-20000, 20000) : random.in(-50, 50);
        const SampleLine columns(offset, offset + 40.0f, random.in(0.1f, 3));
        const SampleLine rows(-7, 30, 0.37f);
        if (!columns.scale()) continue;
        // Points at, near and far from the samples of both lines.
        Vertices v;
        for (std::size_t i = 0; i < 400; ++i) {
            const auto k = static_cast<std::size_t>(random.below(static_cast<int>(columns.size())));
            const float near = columns[k];
            const float x = i % 4 == 0   ? near
                            : i % 4 == 1 ? std::nextafter(near, 1e30f)
                            : i % 4 == 2 ? near + random.in(-0.01f, 0.01f)
                                         : offset + random.in(-60, 100);
            v.x.push_back(x);
            v.y.push_back(random.in(-20, 50));
            v.z.push_back(0.0f);
        }
        std::vector<std::uint32_t> codes(v.x.size());
        m_kernels.cellCodes(v.x.data(), v.y.data(), v.z.data(), v.x.size(), {1, 0, 0, 0},
                            {0, 1, 0, 0}, *columns.scale(), *rows.scale(), codes.data());
        std::size_t odd = 0;
        for (std::size_t i = 0; i < codes.size(); ++i) {
            const std::uint32_t column = codes[i] >> 16;
            const std::uint32_t row = codes[i] & 0xffff;
            odd += column % 2 + row % 2;
            if (column % 2 == 0) {
                EXPECT_EQ(column / 2, columns.countBelow(v.x[i]));
                EXPECT_EQ(column / 2, columns.countUpTo(v.x[i]));
            }
            if (row % 2 == 0) {
                EXPECT_EQ(row / 2, rows.countUpTo(v.y[i]));
            }
        }
        EXPECT_GT(odd, 0u);
        EXPECT_LT(odd, codes.size());
    }
}

TEST_P(EachWidth, RowsAreUnderWhereTheSidesAgreeOrOneIsZero) {
    TestRandom random(53);
    std::vector<float> rows;
    for (int i = 0; i < 67; ++i) rows.push_back(static_cast<float>(i) * 0.25f);
    for (int repeat = 0; repeat < 500; ++repeat) {
        ColumnEdges edges{};
        for (int k = 0; k < 3; ++k) {
            // Whole quarters, so that sides are exactly zero now and then.
            edges.alongX[k] = static_cast<float>(random.below(9) - 4);
            edges.fromY[k] = static_cast<float>(random.below(64)) * 0.25f;
            edges.across[k] = static_cast<float>(random.below(33) - 16);
        }
        const auto count = static_cast<std::size_t>(random.below(68));
        std::vector<std::uint32_t> expected;
        for (std::size_t i = 0; i < count; ++i) {
            int zero = 0;
            int negative = 0;
            int positive = 0;
            for (int k = 0; k < 3; ++k) {
                const float side = edges.alongX[k] * (rows[i] - edges.fromY[k]) - edges.across[k];
                zero += side == 0 ? 1 : 0;
                negative += side < 0 ? 1 : 0;
                positive += side > 0 ? 1 : 0;
            }
            if (zero > 0 || negative == 3 || positive == 3) {
                expected.push_back(static_cast<std::uint32_t>(i));
            }
        }
        std::vector<std::uint32_t> found(count);
        found.resize(m_kernels.rowsUnder(edges, rows.data(), count, found.data()));
        EXPECT_EQ(found, expected);
    }
}

TEST_P(EachWidth, HeightsAreThoseOfThePlane) {
    TestRandom random(54);
    std::vector<float> rows;
    for (int i = 0; i < 40; ++i) rows.push_back(random.in(-10, 10));
    const std::vector<std::uint32_t> places = {0, 1, 2, 3, 5, 8, 13, 14, 15, 21, 22, 23, 39};
    for (int repeat = 0; repeat < 100; ++repeat) {
        // z = a + slope · y: u runs along x, v along y.
        const float slope = random.in(-2, 2);
        const float a = random.in(-3, 3);
        const ColumnPlane plane{1.0, 0.0, 0.0, 0.25, 1.0, 0.5f, a, 7.0f, slope};
        std::vector<float> z(places.size());
        m_kernels.heights(plane, rows.data(), places.data(), places.size(), z.data());
        for (std::size_t i = 0; i < places.size(); ++i) {
            // s is 0.25 everywhere: the column lies a quarter along u.
            const float expected = a + 7.0f * 0.25f + slope * (rows[places[i]] - 0.5f);
            EXPECT_TRUE(sameBits(z[i], expected));
        }
    }
}

std::string nameOfWidth(const testing::TestParamInfo<const TurnKernels*>& tested) {
    return tested.param->name;
}

INSTANTIATE_TEST_SUITE_P(Turn, EachWidth, testing::ValuesIn(availableTurnKernels()), nameOfWidth);

TEST(TurnKernels, TheWidestAreInUseUnlessOthersAreChosen) {
    const auto& all = availableTurnKernels();
    for (const TurnKernels* kernels : all) {
        useTurnKernels(*kernels);
        EXPECT_EQ(&turnKernels(), kernels);
    }
    EXPECT_EQ(&turnKernels(), all.back());
}

}  // namespace

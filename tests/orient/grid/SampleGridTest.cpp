#include "orient/grid/SampleGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tools/TestRandom.h"

using namespace Tesk::orient;

namespace {

UBox3<float> footprint(float width, float depth) {
    return UBox3<float>({0.0f, 0.0f, 0.0f}, {width, depth, 1.0f});
}

std::vector<float> samplesOf(const SampleLine& line) {
    std::vector<float> samples;
    for (std::size_t i = 0; i < line.size(); ++i) samples.push_back(line[i]);
    return samples;
}

TEST(SampleGrid, AUnitFootprintHasFortyByFortyCells) {
    const SampleGrid grid = makeSampleGrid(footprint(1.0f, 1.0f));
    EXPECT_EQ(grid.columns.size(), 40u);
    EXPECT_EQ(grid.rows.size(), 40u);
    // 300 / 0.075 falls short of 4000 in single precision, so the other side has 3999 hundredths.
    const float depth = 300.0f / 4000.0f;
    const float width = 300.0f / 3999.0f;
    EXPECT_EQ(grid.cellArea, width * depth);
    EXPECT_EQ(grid.columns[0], -1.0f + width * 0.5f);
    EXPECT_EQ(grid.columns[1], (-1.0f + width) + width * 0.5f);
    EXPECT_EQ(grid.rows[1], (-1.0f + depth) + depth * 0.5f);
}

TEST(SampleGrid, TheShorterSideHasFortyCellsWhicheverItIs) {
    const SampleGrid wide = makeSampleGrid(footprint(38.0f, 8.0f));
    EXPECT_EQ(wide.rows.size(), 40u);
    EXPECT_EQ(wide.columns.size(), 160u);
    const SampleGrid deep = makeSampleGrid(footprint(8.0f, 38.0f));
    EXPECT_EQ(deep.columns.size(), 40u);
    EXPECT_EQ(deep.rows.size(), 160u);
    EXPECT_EQ(wide.cellArea, deep.cellArea);
}

TEST(SampleGrid, TheNumberOfCellsDependsOnTheShapeAndNotOnTheSize) {
    const SampleGrid small = makeSampleGrid(footprint(8.0f, 18.0f));
    const SampleGrid big = makeSampleGrid(footprint(9998.0f, 19998.0f));
    EXPECT_EQ(small.columns.size(), big.columns.size());
    EXPECT_EQ(small.rows.size(), big.rows.size());
}

TEST(SampleGrid, StepsAreAccumulated) {
    const SampleLine line(-1.0f, 100.0f, 0.1f);
    float x = -1.0f;
    for (std::size_t i = 0; i < line.size(); ++i, x += 0.1f) ASSERT_EQ(line[i], x + 0.05f);
    EXPECT_GE(x, 100.0f);
    EXPECT_NE(line[line.size() - 1], -1.0f + 0.1f * static_cast<float>(line.size() - 1) + 0.05f);
}

TEST(SampleGrid, ALineHasAtLeastOneCell) {
    EXPECT_EQ(samplesOf(SampleLine(0.0f, 1.0f, 5.0f)), std::vector<float>{2.5f});
    EXPECT_EQ(samplesOf(SampleLine(0.0f, 1.0f, 1.0f)), std::vector<float>{0.5f});
    EXPECT_EQ(samplesOf(SampleLine(0.0f, 1.5f, 1.0f)), (std::vector<float>{0.5f, 1.5f}));
}

TEST(SampleGrid, AStepThatIsNotPositiveGivesNoCells) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float step : {0.0f, -1.0f, nan, -infinity}) {
        EXPECT_EQ(SampleLine(0.0f, 1.0f, step).size(), 0u) << step;
    }
}

TEST(SampleGrid, ALineEndsWhereTheStepNoLongerMovesTheCoordinate) {
    EXPECT_EQ(SampleLine(1e9f, 1e9f + 128.0f, 1.0f).size(), 1u);
    // From 2^24 on, a float cannot hold the next odd number.
    const SampleLine line(16777210.0f, 16777300.0f, 1.0f);
    EXPECT_EQ(line.size(), 7u);
}

TEST(SampleGrid, ABoxWithoutFiniteSizeHasNoCells) {
    const float infinity = std::numeric_limits<float>::infinity();
    const UBox3<float> endless({0, 0, 0}, {infinity, 1, 1});
    const SampleGrid grid = makeSampleGrid(endless);
    EXPECT_EQ(grid.columns.size() * grid.rows.size(), 0u);
}

TEST(SampleGrid, ABoxBeyondTheReachOfTheCellCountsHasNoCells) {
    for (const UBox3<float>& box :
         {footprint(3e7f, 3e7f), footprint(3e7f, 1.0f), footprint(1.0f, 3e7f),
          footprint(1.3e6f, 0.1f), footprint(0.1f, 1.3e6f), footprint(1e38f, 1e38f)}) {
        const SampleGrid grid = makeSampleGrid(box);
        EXPECT_EQ(grid.columns.size() * grid.rows.size(), 0u);
    }
}

TEST(SampleGrid, CountBelowIsTheNumberOfSmallerSamples) {
    TestRandom random(15);
    for (const float low : {-1.0f, 1000.3f, -70000.7f}) {
        for (const float step : {0.013f, 0.3f, 7.0f}) {
            const SampleLine line(low, low + 211.7f * step, step);
            const std::vector<float> samples = samplesOf(line);
            const auto expectCount = [&](float value) {
                const auto expected = std::count_if(samples.begin(), samples.end(),
                                                    [&](float s) { return s < value; });
                ASSERT_EQ(line.countBelow(value), static_cast<std::size_t>(expected)) << value;
            };
            for (const float s : samples) {
                expectCount(s);
                expectCount(std::nextafter(s, -1e30f));
                expectCount(std::nextafter(s, 1e30f));
            }
            for (int i = 0; i < 500; ++i) expectCount(random.in(low - step, low + 220.0f * step));
            expectCount(-std::numeric_limits<float>::infinity());
            expectCount(std::numeric_limits<float>::infinity());
            expectCount(std::numeric_limits<float>::max());
        }
    }
    EXPECT_EQ(SampleLine(0.0f, 9.0f, 1.0f).countBelow(std::nanf("")), 0u);
    EXPECT_EQ(SampleLine().countBelow(1.0f), 0u);
}

TEST(SampleGrid, CountBelowHoldsOnALongLineWhoseStepsDriftFarFromTheirIndex) {
    const SampleLine line(-1.0f, 30001.0f, 0.053f);
    const std::vector<float> samples = samplesOf(line);
    ASSERT_GT(samples.size(), 400000u);
    for (std::size_t i = 0; i < samples.size(); i += 101) {
        ASSERT_EQ(line.countBelow(samples[i]), i);
        ASSERT_EQ(line.countBelow(std::nextafter(samples[i], 1e30f)), i + 1);
    }
}

TEST(SampleGrid, CountingUpToAValueTakesASampleThere) {
    const SampleLine line(0.0f, 4.0f, 1.0f);
    EXPECT_EQ(line.countUpTo(0.49f), 0u);
    EXPECT_EQ(line.countUpTo(0.5f), 1u);
    EXPECT_EQ(line.countUpTo(1.49f), 1u);
    EXPECT_EQ(line.countUpTo(3.5f), 4u);
    EXPECT_EQ(line.countUpTo(9.0f), 4u);
    EXPECT_EQ(SampleLine().countUpTo(1.0f), 0u);
}

}  // namespace

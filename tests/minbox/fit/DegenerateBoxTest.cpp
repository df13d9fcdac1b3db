#include <gtest/gtest.h>

#include <limits>

#include "BoxTestSupport.h"

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// What every operation of the hull searches gives: full sizes in descending order, or no box.
struct Case {
    friend std::ostream& operator<<(std::ostream& out, const Case& tested) {
        return out << tested.name;
    }

    std::string name;
    Points points;
    std::vector<float> sizes;  ///< none where there is no box
    /// What generateOBB() gives: it does not pass over points that are not finite.
    bool hasPrincipalBox = true;
};

Points scaledBox(float scale) {
    return boxCorners(3 * scale, 2 * scale, scale);
}

Points moved(Points points, float by) {
    for (UPoint3<float>& p : points) p.x += by;
    return points;
}

Points with(Points points, const Points& more) {
    points.insert(points.end(), more.begin(), more.end());
    return points;
}

std::vector<Case> cases() {
    const Points square = {{0, 0, 0}, {4, 0, 0}, {4, 3, 0}, {0, 3, 0}};
    return {{"NoPoints", {}, {}, false},
            {"OnePoint", {{1, 2, 3}}, {0, 0, 0}},
            {"TwoPoints", {{1, 2, 3}, {1, 2, 5}}, {2, 0, 0}},
            {"ThreePoints", {{0, 0, 0}, {6, 0, 0}, {2, 1, 0}}, {6, 1, 0}},
            {"AllEqual", {{7, 7, 7}, {7, 7, 7}, {7, 7, 7}, {7, 7, 7}}, {0, 0, 0}},
            {"Collinear", {{0, 0, 0}, {1, 2, 2}, {2, 4, 4}, {4, 8, 8}}, {12, 0, 0}},
            {"Coplanar", with(square, {{1, 1, 0}, {2, 0, 0}}), {4, 3, 0}},
            {"CoplanarAskew", {{0, 0, 0}, {4, 4, 2}, {-2, 1, 2}, {2, 5, 4}}, {6, 3, 0}},
            {"CollinearAlongZ", {{1, 2, 3}, {1, 2, -3}, {1, 2, 0}}, {6, 0, 0}},
            {"Duplicates", with(scaledBox(1), scaledBox(1)), {3, 2, 1}},
            {"NanAndInfinityAmongGoodPoints",
             with(scaledBox(1), {{kNan, 0, 0}, {9, kInfinity, 0}, {0, 9, -kInfinity}}),
             {3, 2, 1},
             false},
            {"AllNan", {{kNan, kNan, kNan}, {kNan, 0, 0}}, {}, false},
            {"VerySmall", scaledBox(1e-30f), {3e-30f, 2e-30f, 1e-30f}},
            {"VeryLarge", scaledBox(1e30f), {3e30f, 2e30f, 1e30f}},
            {"NearTheEndOfFloats", {{0, 0, 0}, {3, 4, 0}, {2, 3, -2e38f}}, {2e38f, 0, 0}},
            {"FarAway", moved(scaledBox(1), 1e6f), {3, 2, 1}},
            {"Thin", boxCorners(3, 2, 1e-6f), {3, 2, 1e-6f}}};
}

std::array<float, 3> sizesOf(const OrientedBox3& box, float times) {
    std::array<float, 3> sizes = sortedExtents(box);
    std::reverse(sizes.begin(), sizes.end());
    for (float& size : sizes) size *= times;
    return sizes;
}

void expectFrame(const OrientedBox3& box) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(box.axis[i].GetLength(), 1.0f, 1e-6f);
        EXPECT_NEAR(box.axis[i] | box.axis[(i + 1) % 3], 0.0f, 1e-6f);
    }
}

void expectSizes(const Case& tested, const OrientedBox3& box, float times) {
    if (tested.sizes.empty()) {
        EXPECT_TRUE(isNoBox(box));
        return;
    }
    expectFrame(box);
    const std::array<float, 3> sizes = sizesOf(box, times);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(sizes[i], tested.sizes[i], 1e-6f * tested.sizes[0]);
        if (tested.sizes[i] > 0.0f) {
            EXPECT_NEAR(sizes[i] / tested.sizes[i], 1.0f, tested.name == "Thin" ? 0.1f : 1e-5f);
        }
    }
}

class DegenerateBox : public testing::TestWithParam<Case> {};

TEST_P(DegenerateBox, EveryHullSearchGivesTheStatedBox) {
    const Case& tested = GetParam();
    for (const unsigned int threads : {1u, 3u}) {
        for (const Operation& operation : allOperations()) {
            if (operation.name == "axis") continue;
            SCOPED_TRACE(operation.name);
            MinBoundingBox calculator(threads);
            const OrientedBox3 box = operation.run(calculator, tested.points);
            const bool isFlat = !tested.sizes.empty() && tested.sizes[2] == 0.0f;
            if (operation.name == "baseArea" && isFlat) {
                // Every flat box has a side without area: all are equally good.
                expectFrame(box);
                EXPECT_NEAR(sizesOf(box, 2.0f)[2], 0.0f, 1e-6f * tested.sizes[0]);
            } else {
                expectSizes(tested, box, 2.0f);
            }
            if (!tested.sizes.empty()) {
                EXPECT_LE(farthestOutside(box, tested.points),
                          1e-6 * static_cast<double>(tested.sizes[0]));
            }
        }
    }
}

TEST_P(DegenerateBox, TheBoxAroundZHoldsThePoints) {
    const Case& tested = GetParam();
    MinBoundingBox calculator;
    const OrientedBox3 box = calculator.minBaseAreaBoxAroundAxis(
        countOf(tested.points), tested.points.data(), UVector3<float>(0, 0, 1));
    if (tested.sizes.empty()) {
        EXPECT_TRUE(isNoBox(box));
        return;
    }
    expectFrame(box);
    EXPECT_EQ(std::fabs(box.axis[2].z), 1.0f);
    EXPECT_LE(farthestOutside(box, tested.points), 1e-6 * static_cast<double>(tested.sizes[0]));
}

TEST_P(DegenerateBox, ThePrincipalAxesBoxHoldsThePoints) {
    const Case& tested = GetParam();
    OrientedBox3 box = MinBoundingBox::generateOBB(tested.points.data(), countOf(tested.points));
    if (!tested.hasPrincipalBox) {
        EXPECT_TRUE(isNoBox(box));
        return;
    }
    expectFrame(box);
    box.extent = box.extent * 0.5f;
    EXPECT_LE(farthestOutside(box, tested.points), 1e-6 * static_cast<double>(tested.sizes[0]));
}

INSTANTIATE_TEST_SUITE_P(Table, DegenerateBox, testing::ValuesIn(cases()),
                         [](const auto& tested) { return tested.param.name; });

TEST(DegenerateBoxes, NullPointersAndNegativeCountsGiveNoBox) {
    const Points points = boxCorners(1, 2, 3);
    MinBoundingBox calculator;
    for (const int n : {0, -1, -2147483647}) {
        EXPECT_TRUE(isNoBox(calculator(n, points.data())));
        EXPECT_TRUE(isNoBox(calculator.minBaseAreaBox(n, points.data())));
        EXPECT_TRUE(isNoBox(calculator.minBaseAreaAndHeightBox(n, points.data())));
        EXPECT_TRUE(isNoBox(calculator.minBaseAreaBoxAroundAxis(n, points.data(), {0, 0, 1})));
    }
    EXPECT_TRUE(isNoBox(calculator(5, nullptr)));
    EXPECT_TRUE(isNoBox(calculator.minBaseAreaBox(5, nullptr)));
    EXPECT_TRUE(isNoBox(calculator.minBaseAreaAndHeightBox(5, nullptr)));
    EXPECT_TRUE(isNoBox(calculator.minBaseAreaBoxAroundAxis(5, nullptr, {1, 0, 0})));
}

TEST(DegenerateBoxes, APointBoxHasTheCoordinateAxes) {
    const Points point = {{1, 2, 3}};
    MinBoundingBox calculator;
    const OrientedBox3 box = calculator(1, point.data());
    EXPECT_EQ(box.axis[0], UVector3<float>(1, 0, 0));
    EXPECT_EQ(box.axis[1], UVector3<float>(0, 1, 0));
    EXPECT_EQ(box.axis[2], UVector3<float>(0, 0, 1));
    EXPECT_EQ(box.center, UVector3<float>(1, 2, 3));
    EXPECT_EQ(box.extent, UVector3<float>(0, 0, 0));
}

TEST(DegenerateBoxes, ASegmentBoxRunsAlongItsFirstAxis) {
    const Points ends = {{0, 0, 0}, {3, 4, 0}};
    MinBoundingBox calculator;
    const OrientedBox3 box = calculator(2, ends.data());
    EXPECT_EQ(box.axis[0], UVector3<float>(0.6f, 0.8f, 0));
    EXPECT_EQ(box.extent, UVector3<float>(2.5f, 0, 0));
    EXPECT_EQ(box.center, UVector3<float>(1.5f, 2, 0));
}

}  // namespace

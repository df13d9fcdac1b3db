#include "minbox/outline/Calipers.h"

#include <gtest/gtest.h>

#include <numbers>
#include <numeric>

#include "PreparedHull.h"

using namespace Tesk::minbox;

namespace {

const Vector kUp(0, 0, 1);

using Corners = std::vector<std::array<double, 3>>;

/// Points as hull vertices, and the outline that visits them in order.
struct Flat {
    explicit Flat(const Corners& corners) : points(coordinatesOf(corners), 1.0, startConstants()) {
        outline.resize(corners.size());
        std::iota(outline.begin(), outline.end(), 0);
    }

    static std::vector<double> coordinatesOf(const Corners& corners) {
        std::vector<double> coordinates;
        for (const auto& p : corners) coordinates.insert(coordinates.end(), p.begin(), p.end());
        return coordinates;
    }

    CaliperRect minRect() const {
        Calipers calipers(points);
        calipers.set(kUp, outline);
        return calipers.minRect();
    }

    int rectCount() const {
        Calipers calipers(points);
        calipers.set(kUp, outline);
        int count = 0;
        calipers.forEachRect([&](const CaliperRect&) { ++count; });
        return count;
    }

    HullPoints points;
    Outline outline;
};

TEST(Calipers, ASquareKeepsTheRectangleOnItsClosingEdge) {
    Flat square({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    const CaliperRect rect = square.minRect();
    EXPECT_EQ(rect.area, 4.0);
    EXPECT_EQ(rect.support[CaliperRect::kBase], 0);
    // The closing edge runs down, from (0, 2) to (0, 0).
    EXPECT_EQ(rect.axes[0], Vector(0, -2, 0));
    EXPECT_EQ(rect.axes[1], Vector(2, 0, 0));
    EXPECT_EQ(square.rectCount(), 1) << "the first update comes back to the same bottom";
}

TEST(Calipers, TheAreaIsScaledByTheDirectionsLength) {
    Flat square({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    Calipers calipers(square.points);
    calipers.set(Vector(0, 0, 3), square.outline);
    EXPECT_EQ(calipers.minRect().area, 12.0);
}

TEST(Calipers, ATurnedSquareWithOneMoreCornerIsFound) {
    // A square with one corner cut off: the least rectangle is the square's.
    Flat shape({{3, 0}, {4, 1}, {1, 4}, {0, 3}, {2.5, 0}});
    removeCollinear(shape.points, kUp, shape.outline);
    const CaliperRect rect = shape.minRect();
    double least = 1e30;
    for (int i = 0; i < 100000; ++i) {
        const double angle = std::numbers::pi * i / 100000;
        const Vector u(std::cos(angle), std::sin(angle), 0);
        const Vector v(-u.y, u.x, 0);
        least = std::min(least, shape.points.rangeAlong(shape.points[0], u).length() *
                                    shape.points.rangeAlong(shape.points[0], v).length());
    }
    EXPECT_NEAR(rect.area, least, 1e-4);
}

TEST(Calipers, OfRandomPolygonsTheLeastRectangleIsThatOfTheBestEdge) {
    TestRandom random(6);
    for (int i = 0; i < 100; ++i) {
        Corners corners;
        double angle = 0.0;
        for (;;) {
            angle += static_cast<double>(random.in(0.05f, 1.2f));
            if (angle >= 2.0 * std::numbers::pi) break;
            corners.push_back({3.0 * std::cos(angle), 2.0 * std::sin(angle)});
        }
        Flat shape(corners);
        double least = 1e30;
        for (std::size_t k = 0; k < corners.size(); ++k) {
            const auto& a = corners[k];
            const auto& b = corners[(k + 1) % corners.size()];
            const Vector u = Vector(b[0] - a[0], b[1] - a[1], 0).GetNormal();
            const Vector v(-u.y, u.x, 0);
            least = std::min(least, shape.points.rangeAlong(shape.points[0], u).length() *
                                        shape.points.rangeAlong(shape.points[0], v).length());
        }
        EXPECT_NEAR(shape.minRect().area, least, 1e-9);
    }
}

TEST(Calipers, TwoSidesWithTheSameAngleAdvanceTogether) {
    Flat hexagon({{0, 0}, {2, -1}, {4, 0}, {4, 3}, {2, 4}, {0, 3}});
    Calipers calipers(hexagon.points);
    calipers.set(kUp, hexagon.outline);
    CaliperRect rect = calipers.edgeRect(0);
    const std::array<int, 4> before = rect.support;
    SideAngles entries{};
    const int count = calipers.angles(rect.support, entries);
    ASSERT_GT(count, 1);
    const std::array<int, 4> order = sortAngles(entries, count);
    ASSERT_EQ(entries[static_cast<std::size_t>(order[0])].sinSq,
              entries[static_cast<std::size_t>(order[1])].sinSq);
    calipers.forEachRect([](const CaliperRect&) {});  // marks bottoms
    std::vector<CaliperRect> rects;
    calipers.forEachRect([&](const CaliperRect& r) { rects.push_back(r); });
    ASSERT_GE(rects.size(), 2u);
    int moved = 0;
    for (const int support : rects[1].support) {
        moved += std::find(before.begin(), before.end(), support) == before.end() ? 1 : 0;
    }
    EXPECT_EQ(moved, 2);
}

TEST(Calipers, EveryUpdateGoesToANewBottom) {
    TestRandom random(2);
    for (const int sides : {3, 5, 8, 31}) {
        Corners corners;
        for (int i = 0; i < sides; ++i) {
            const double angle = 2.0 * std::numbers::pi * i / sides;
            corners.push_back({std::cos(angle), std::sin(angle)});
        }
        Flat shape(corners);
        EXPECT_LE(shape.rectCount(), sides);
    }
}

TEST(RemoveCollinear, DropsTheMiddleOfThreeInLine) {
    Flat shape({{0, 0}, {1, 0}, {2, 0}, {2, 2}, {0, 2}, {0, 1}});
    removeCollinear(shape.points, kUp, shape.outline);
    EXPECT_EQ(shape.outline, (Outline{0, 2, 3, 4}));
}

TEST(RemoveCollinear, DropsARepeatedClosingVertex) {
    Flat shape({{0, 0}, {2, 0}, {2, 2}, {0, 2}});
    shape.outline.push_back(0);
    removeCollinear(shape.points, kUp, shape.outline);
    EXPECT_EQ(shape.outline, (Outline{0, 1, 2, 3}));
}

TEST(RemoveCollinear, LeavesNothingOfALineAndAnEmptyOutline) {
    Flat line({{0, 0}, {1, 0}, {2, 0}});
    removeCollinear(line.points, kUp, line.outline);
    EXPECT_TRUE(line.outline.empty());
    removeCollinear(line.points, kUp, line.outline);
    EXPECT_TRUE(line.outline.empty());
}

TEST(RemoveCollinear, SeesVerticesInLineAlongTheDirectionOnly) {
    // Seen from above, vertices 0, 1 and 2 are in line; in space they are not.
    Flat shape({{0, 0, 0}, {1, 0, 7}, {2, 0, 0}, {1, 2, 0}});
    removeCollinear(shape.points, kUp, shape.outline);
    EXPECT_EQ(shape.outline, (Outline{0, 2, 3}));
}

std::array<int, 4> sorted(std::vector<double> values) {
    SideAngles entries{};
    for (std::size_t i = 0; i < values.size(); ++i) entries[i] = {values[i], static_cast<int>(i)};
    return sortAngles(entries, static_cast<int>(values.size()));
}

TEST(RemoveSteep, DropsTheStartOfAnEdgeAlongTheDirection) {
    Flat shape({{0, 0, 0}, {2, 0, 0}, {2, 0, 5}, {2, 2, 0}, {0, 2, 0}, {1e-9, 2, 3}});
    removeSteep(shape.points, {0, 0, 7}, shape.outline);
    EXPECT_EQ(shape.outline, (Outline{0, 2, 3, 5}));
    removeSteep(shape.points, {0, 0, 7}, shape.outline);
    EXPECT_EQ(shape.outline, (Outline{0, 2, 3, 5}));
}

TEST(RemoveSteep, LeavesNothingOfVerticesAboveEachOther) {
    Flat shape({{1, 2, 0}, {1, 2, 1}, {1, 2, -3}});
    removeSteep(shape.points, kUp, shape.outline);
    EXPECT_TRUE(shape.outline.empty());
}

TEST(SortAngles, SortsAnyOrderOfTwoToFour) {
    for (int count = 2; count <= 4; ++count) {
        std::vector<double> values = {1, 2, 3, 4};
        values.resize(static_cast<std::size_t>(count));
        do {
            const std::array<int, 4> order = sorted(values);
            for (std::size_t i = 0; i + 1 < values.size(); ++i) {
                EXPECT_LT(values[static_cast<std::size_t>(order[i])],
                          values[static_cast<std::size_t>(order[i + 1])]);
            }
        } while (std::next_permutation(values.begin(), values.end()));
    }
}

TEST(SortAngles, OfEqualOnesTheLowerStaysFirst) {
    using Order = std::array<int, 4>;
    EXPECT_EQ(sorted({1, 1}), (Order{0, 1, 2, 3}));
    EXPECT_EQ(sorted({1, 1, 1}), (Order{0, 1, 2, 3}));
    EXPECT_EQ(sorted({1, 1, 1, 1}), (Order{0, 1, 2, 3}));
    EXPECT_EQ(sorted({5}), (Order{0, 1, 2, 3}));
    EXPECT_EQ(sorted({2, 1, 1, 2}), (Order{1, 2, 0, 3}));
}

}  // namespace

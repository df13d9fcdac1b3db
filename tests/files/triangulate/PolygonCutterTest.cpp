#include "triangulate/PolygonCutter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <random>
#include <utility>

namespace {

using Tesk::PartPoint;
using Tesk::files::PolygonCutter;
using Triangles = std::vector<PolygonCutter::Triangle>;

std::vector<std::int32_t> allOf(const std::vector<PartPoint>& outline) {
    std::vector<std::int32_t> corners(outline.size());
    std::iota(corners.begin(), corners.end(), 0);
    return corners;
}

Triangles cut(const std::vector<PartPoint>& outline) {
    Triangles triangles;
    PolygonCutter().cut(allOf(outline), outline, triangles);
    return triangles;
}

/// n − 2 triangles, and along every edge of the outline one of them; all other edges come twice,
/// there and back, so that a surface around the polygon stays closed.
void expectWhole(const std::vector<PartPoint>& outline, const Triangles& triangles) {
    const auto count = static_cast<std::int32_t>(outline.size());
    ASSERT_EQ(triangles.size(), outline.size() - 2);
    std::map<std::pair<std::int32_t, std::int32_t>, int> edges;
    for (const auto& [a, b, c] : triangles) {
        for (const auto& [from, to] : {std::pair(a, b), std::pair(b, c), std::pair(c, a)}) {
            ++edges[{from, to}];
            --edges[{to, from}];
        }
    }
    for (std::int32_t i = 0; i < count; ++i) {
        const std::int32_t next = (i + 1) % count;
        --edges[{i, next}];
        ++edges[{next, i}];
    }
    for (const auto& [edge, balance] : edges) {
        EXPECT_EQ(balance, 0) << edge.first << " to " << edge.second;
    }
}

/// Twice the area of a triangle seen along z, positive where it turns left.
double areaTwice(const PartPoint& a, const PartPoint& b, const PartPoint& c) {
    return (static_cast<double>(b.x) - a.x) * (static_cast<double>(c.y) - a.y) -
           (static_cast<double>(b.y) - a.y) * (static_cast<double>(c.x) - a.x);
}

/// Every triangle turns left, and together they cover the outline's area: so none overlap.
void expectCovered(const std::vector<PartPoint>& outline, const Triangles& triangles) {
    expectWhole(outline, triangles);
    double expected = 0.0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        expected += areaTwice({}, outline[i], outline[(i + 1) % outline.size()]);
    }
    double sum = 0.0;
    for (const auto& [a, b, c] : triangles) {
        const double area =
            areaTwice(outline[static_cast<std::size_t>(a)], outline[static_cast<std::size_t>(b)],
                      outline[static_cast<std::size_t>(c)]);
        EXPECT_GT(area, 0.0);
        sum += area;
    }
    EXPECT_NEAR(sum, expected, 1e-4 * expected);
}

/// A polygon around the origin with random radii: mostly concave, never crossing itself.
std::vector<PartPoint> randomStar(std::size_t corners, unsigned seed) {
    std::mt19937 random(seed);
    std::vector<PartPoint> outline;
    for (std::size_t i = 0; i < corners; ++i) {
        const double angle =
            6.283185307179586 * static_cast<double>(i) / static_cast<double>(corners);
        const double radius = 1.0 + static_cast<double>(random() % 1000) / 100.0;
        outline.push_back({static_cast<float>(radius * std::cos(angle)),
                           static_cast<float>(radius * std::sin(angle)), 0.0f});
    }
    return outline;
}

/// Points of a plane moved into space: along z, or with x, y and z exchanged, or tilted.
std::vector<PartPoint> placed(std::vector<PartPoint> outline, int pose) {
    for (PartPoint& p : outline) {
        if (pose == 1) p = {5.0f, p.x, p.y};
        if (pose == 2) p = {p.y, -3.0f, p.x};
        if (pose == 3) p = {p.x - 2.0f * p.y + 1e3f, 2.0f * p.x + p.y, p.x + p.y - 1e3f};
    }
    return outline;
}

TEST(PolygonCutter, AConvexPolygonBecomesAFan) {
    EXPECT_EQ(cut({{0, 0, 0}, {2, 0, 0}, {3, 1, 0}, {2, 2, 0}, {0, 2, 0}}),
              (Triangles{{0, 1, 2}, {0, 2, 3}, {0, 3, 4}}));
}

TEST(PolygonCutter, AQuadIsCutFromItsConcaveCorner) {
    const std::vector<PartPoint> arrow = {{0, 0, 0}, {4, -2, 0}, {1, 0, 0}, {4, 2, 0}};
    expectCovered(arrow, cut(arrow));
    for (std::size_t turn = 1; turn < 4; ++turn) {
        std::vector<PartPoint> turned = arrow;
        std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(turn),
                    turned.end());
        expectCovered(turned, cut(turned));
    }
}

TEST(PolygonCutter, CornersInTheMiddleOfAnEdgeStay) {
    const std::vector<PartPoint> square = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 1, 0},
                                           {2, 2, 0}, {1, 2, 0}, {0, 2, 0}, {0, 1, 0}};
    expectCovered(square, cut(square));
}

TEST(PolygonCutter, ConcavePolygonsAreCoveredWithoutOverlap) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        const std::vector<PartPoint> star = randomStar(4 + seed % 60, seed);
        expectCovered(star, cut(star));
    }
    std::vector<PartPoint> comb;
    for (int i = 0; i < 200; ++i) {
        comb.push_back({static_cast<float>(i), i % 2 == 0 ? 0.0f : 50.0f, 0});
    }
    comb.push_back({199, 60, 0});
    comb.push_back({0, 60, 0});
    expectCovered(comb, cut(comb));
}

TEST(PolygonCutter, AHoleMayBeJoinedToTheOutline) {
    const std::vector<PartPoint> ring = {{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 9, 0}, {0, 0, 0},
                                         {3, 3, 0}, {3, 6, 0}, {6, 6, 0}, {6, 3, 0}, {3, 3, 0}};
    expectCovered(ring, cut(ring));
}

TEST(PolygonCutter, ThePoseInSpaceDoesNotChangeTheCut) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        const std::vector<PartPoint> star = randomStar(24, seed);
        const Triangles flat = cut(star);
        for (const int pose : {1, 2, 3}) {
            const std::vector<PartPoint> moved = placed(star, pose);
            // Turning the view may choose other ears; what it covers is the same.
            expectCovered(star, cut(moved));
        }
        expectCovered(star, flat);
    }
}

TEST(PolygonCutter, APolygonThatIsNotFlatIsSeenAlongItsNormal) {
    for (unsigned seed = 1; seed <= 50; ++seed) {
        SCOPED_TRACE(seed);
        std::vector<PartPoint> wavy = randomStar(30, seed);
        std::mt19937 random(seed);
        for (PartPoint& p : wavy) p.z = static_cast<float>(random() % 100) / 1000.0f;
        expectWhole(wavy, cut(wavy));
    }
}

TEST(PolygonCutter, APolygonThatCrossesItselfLosesNothing) {
    const std::vector<PartPoint> bow = {{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}};
    expectWhole(bow, cut(bow));
    std::vector<PartPoint> pentagram;
    for (const int i : {0, 2, 4, 1, 3}) {
        pentagram.push_back({static_cast<float>(std::cos(i * 1.2566)),
                             static_cast<float>(std::sin(i * 1.2566)), 0});
    }
    expectWhole(pentagram, cut(pentagram));
    std::mt19937 random(1);
    for (int run = 0; run < 200; ++run) {
        std::vector<PartPoint> tangle;
        for (int i = 0; i < 3 + run % 20; ++i) {
            tangle.push_back({static_cast<float>(random() % 10), static_cast<float>(random() % 10),
                              static_cast<float>(random() % 10)});
        }
        expectWhole(tangle, cut(tangle));
    }
}

TEST(PolygonCutter, APolygonWithoutAreaLosesNothing) {
    for (const std::size_t corners : {4u, 7u, 5000u}) {
        const std::vector<PartPoint> point(corners, PartPoint{1, 2, 3});
        expectWhole(point, cut(point));
        std::vector<PartPoint> line;
        for (std::size_t i = 0; i < corners; ++i) line.push_back({static_cast<float>(i), 0, 0});
        expectWhole(line, cut(line));
    }
}

TEST(PolygonCutter, AHugeTangleEndsSoon) {
    std::mt19937 random(3);
    std::vector<PartPoint> tangle;
    for (int i = 0; i < 10'000; ++i) {
        tangle.push_back({static_cast<float>(random()), static_cast<float>(random()), 0});
    }
    EXPECT_EQ(cut(tangle).size(), tangle.size() - 2);
}

}  // namespace

#include "orient/sampling/TriangleRectTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "OrientOptimizer.h"
#include "orient/candidates/RandomSource.h"
#include "tools/TestRandom.h"
#include "tools/TestSize.h"

using namespace Tesk::orient;

namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

std::vector<int> visitedAt(const TriangleRectTree& tree, const UPoint2<float>& p) {
    std::vector<int> visited;
    tree.query(p, [&](int triangle) { visited.push_back(triangle); });
    return visited;
}

UPoint2<float> middleOf(const Rect& r) {
    return {0.5f * (r.minX + r.maxX), 0.5f * (r.minY + r.maxY)};
}

std::vector<TriangleRect> randomEntries(int n, float largest, std::uint64_t seed) {
    TestRandom random(seed);
    std::vector<TriangleRect> entries;
    for (int i = 0; i < n; ++i) {
        Rect rect;
        rect.minX = random.in(0.0f, 100.0f);
        rect.minY = random.in(0.0f, 100.0f);
        rect.maxX = rect.minX + random.in(0.0f, largest);
        rect.maxY = rect.minY + random.in(0.0f, largest);
        entries.push_back({rect, middleOf(rect), i});
    }
    return entries;
}

/// Every entry whose own rectangle holds p is visited, none twice; what else is visited comes from
/// leaves that hold p too.
void expectNothingMissed(const TriangleRectTree& tree, const std::vector<TriangleRect>& entries,
                         const UPoint2<float>& p) {
    std::vector<int> visited = visitedAt(tree, p);
    std::sort(visited.begin(), visited.end());
    ASSERT_EQ(std::adjacent_find(visited.begin(), visited.end()), visited.end());
    std::vector<int> inside;
    for (const TriangleRect& entry : entries) {
        if (entry.rect.contains(p)) inside.push_back(entry.triangle);
    }
    std::sort(inside.begin(), inside.end());
    ASSERT_TRUE(std::includes(visited.begin(), visited.end(), inside.begin(), inside.end()));
}

/// The triangles of the leaf that holds one of the entries. The tree shows its leaves from outside
/// when all rectangles but one are empty: a query inside that one then reaches its leaf and no
/// other.
std::vector<int> leafOf(std::vector<TriangleRect> entries, std::size_t one) {
    for (TriangleRect& entry : entries) entry.rect = Rect();
    entries[one].rect = {1.0f, 2.0f, 1.0f, 2.0f};
    const int triangle = entries[one].triangle;
    const std::vector<int> visited = visitedAt(TriangleRectTree(std::move(entries)), {1.5f, 1.5f});
    EXPECT_EQ(std::count(visited.begin(), visited.end(), triangle), 1);
    return visited;
}

void expectSmallLeaves(const std::vector<TriangleRect>& entries) {
    const std::size_t stride = std::max<std::size_t>(1, entries.size() / 40);
    for (std::size_t i = 0; i < entries.size(); i += stride) {
        const std::size_t size = leafOf(entries, i).size();
        ASSERT_GE(size, 1u);
        ASSERT_LE(size, 8u) << "of " << entries.size() << " entries";
    }
}

TEST(TriangleRectTree, AQueryMissesNoRectangleThatHoldsThePoint) {
    TestRandom random(4);
    for (const int n : {1, 2, 8, 9, 16, 17, 33, 100, 1000}) {
        for (const float largest : {0.5f, 10.0f, 90.0f}) {
            const auto entries = randomEntries(n, largest, 7 + static_cast<std::uint64_t>(n));
            const TriangleRectTree tree(entries);
            for (int i = 0; i < 300; ++i) {
                const float x = random.in(-5.0f, 195.0f);
                expectNothingMissed(tree, entries, {x, random.in(-5.0f, 195.0f)});
            }
        }
    }
}

TEST(TriangleRectTree, APointOnTheEdgeIsInside) {
    const auto entries = randomEntries(500, 20.0f, 21);
    const TriangleRectTree tree(entries);
    for (const TriangleRect& entry : entries) {
        const Rect& r = entry.rect;
        const UPoint2<float> middle = middleOf(r);
        for (const UPoint2<float>& p :
             {UPoint2<float>(r.minX, r.minY), UPoint2<float>(r.maxX, r.maxY),
              UPoint2<float>(r.minX, r.maxY), UPoint2<float>(r.maxX, middle.y),
              UPoint2<float>(middle.x, r.minY)}) {
            ASSERT_TRUE(r.contains(p));
            expectNothingMissed(tree, entries, p);
        }
    }
}

TEST(TriangleRectTree, APointJustBeyondTheBoundsVisitsNothing) {
    const TriangleRectTree tree(randomEntries(200, 20.0f, 22));
    const Rect& all = tree.bounds();
    const float far = std::numeric_limits<float>::max();
    EXPECT_TRUE(visitedAt(tree, {std::nextafter(all.minX, -far), all.minY}).empty());
    EXPECT_TRUE(visitedAt(tree, {std::nextafter(all.maxX, far), all.minY}).empty());
    EXPECT_TRUE(visitedAt(tree, {all.minX, std::nextafter(all.minY, -far)}).empty());
    EXPECT_TRUE(visitedAt(tree, {all.minX, std::nextafter(all.maxY, far)}).empty());
}

TEST(TriangleRectTree, ItsBoundsAreTheUnionOfAllRectangles) {
    const auto entries = randomEntries(333, 20.0f, 23);
    Rect all;
    for (const TriangleRect& entry : entries) all.extend(entry.rect);
    const TriangleRectTree tree(entries);
    const Rect& bounds = tree.bounds();
    EXPECT_EQ(bounds.minX, all.minX);
    EXPECT_EQ(bounds.maxX, all.maxX);
    EXPECT_EQ(bounds.minY, all.minY);
    EXPECT_EQ(bounds.maxY, all.maxY);
}

TEST(TriangleRectTree, WithAtMostEightTrianglesTheRootIsASingleLeaf) {
    for (int n = 1; n <= 8; ++n) {
        const auto entries = randomEntries(n, 1.0f, static_cast<std::uint64_t>(n));
        const TriangleRectTree tree(entries);
        // A leaf hands over all its entries in order, whichever of them holds the point.
        const std::vector<int> visited = visitedAt(tree, middleOf(tree.bounds()));
        ASSERT_EQ(visited.size(), static_cast<std::size_t>(n));
        for (int i = 0; i < n; ++i) EXPECT_EQ(visited[static_cast<std::size_t>(i)], i);
    }
}

TEST(TriangleRectTree, ALeafIsSplitFromNineTrianglesOn) {
    const auto entries = randomEntries(9, 1.0f, 90);
    EXPECT_LE(leafOf(entries, 0).size(), 5u);
}

TEST(TriangleRectTree, WithoutTrianglesNoPointVisitsAnything) {
    const TriangleRectTree tree({});
    EXPECT_TRUE(visitedAt(tree, {0.0f, 0.0f}).empty());
    EXPECT_TRUE(visitedAt(tree, {Rect::kFar, -Rect::kFar}).empty());
    EXPECT_FALSE(tree.bounds().contains({0.0f, 0.0f}));
    EXPECT_EQ(tree.bounds().minX, Rect::kFar);
    EXPECT_EQ(tree.bounds().maxX, -Rect::kFar);
}

TEST(TriangleRectTree, LeavesHoldAtMostEightTriangles) {
    for (const int n : {9, 10, 15, 16, 17, 18, 63, 64, 65, 129, 1000}) {
        expectSmallLeaves(randomEntries(n, 5.0f, static_cast<std::uint64_t>(n)));
    }
}

TEST(TriangleRectTree, LeavesHoldAtMostEightTrianglesWithEqualCentroids) {
    for (const int n : {9, 100, 10000}) {
        auto entries = randomEntries(n, 5.0f, 6);
        for (TriangleRect& entry : entries) entry.centroid = {3.0f, 4.0f};
        expectSmallLeaves(entries);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            entries[i].centroid = {static_cast<float>(i % 3), static_cast<float>(i % 2)};
        }
        expectSmallLeaves(entries);
    }
}

TEST(TriangleRectTree, LeavesHoldAtMostEightTrianglesWithCentroidsThatAreNoNumbers) {
    for (const int n : {9, 100, 1000}) {
        auto entries = randomEntries(n, 5.0f, 6);
        for (std::size_t i = 0; i < entries.size(); i += 2) entries[i].centroid.x = kNan;
        for (std::size_t i = 0; i < entries.size(); i += 5) entries[i].centroid.y = -kNan;
        expectSmallLeaves(entries);
        for (TriangleRect& entry : entries) entry.centroid = {kNan, kNan};
        expectSmallLeaves(entries);
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const float end = std::numeric_limits<float>::infinity();
            entries[i].centroid = {i % 2 == 0 ? end : -end, i % 3 == 0 ? end : kNan};
        }
        expectSmallLeaves(entries);
    }
}

TEST(TriangleRectTree, NothingIsMissedWithEqualOrNanCentroids) {
    auto entries = randomEntries(700, 15.0f, 9);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i % 3 == 0) entries[i].centroid = {1.0f, 1.0f};
        if (i % 7 == 0) entries[i].centroid = {kNan, kNan};
    }
    const TriangleRectTree tree(entries);
    TestRandom random(31);
    for (int i = 0; i < 500; ++i) {
        const float x = random.in(0.0f, 115.0f);
        expectNothingMissed(tree, entries, {x, random.in(0.0f, 115.0f)});
    }
}

TEST(TriangleRectTree, TwoBuildsOverTheSameEntriesVisitTheSameTriangles) {
    const auto entries = randomEntries(800, 15.0f, 10);
    const TriangleRectTree first(entries);
    const TriangleRectTree second(entries);
    TestRandom random(32);
    for (int i = 0; i < 500; ++i) {
        const float x = random.in(0.0f, 115.0f);
        const UPoint2<float> p(x, random.in(0.0f, 115.0f));
        ASSERT_EQ(visitedAt(first, p), visitedAt(second, p));
    }
}

TEST(TriangleRectTree, TakesTheListOver) {
    auto entries = randomEntries(100, 15.0f, 11);
    const TriangleRectTree tree(std::move(entries));
    EXPECT_TRUE(entries.empty());  // NOLINT(bugprone-use-after-move)
    EXPECT_FALSE(visitedAt(tree, middleOf(tree.bounds())).empty());
}

TEST(TriangleRectTree, EqualEntriesGiveATreeThatVisitsInEqualOrder) {
    const auto entries = randomEntries(800, 30.0f, 13);
    const TriangleRectTree first(entries);
    const TriangleRectTree second(entries);
    TestRandom random(33);
    for (int i = 0; i < 200; ++i) {
        const float x = random.in(0.0f, 130.0f);
        const UPoint2<float> p(x, random.in(0.0f, 130.0f));
        ASSERT_EQ(visitedAt(first, p), visitedAt(second, p));
    }
}

TEST(TriangleRectTree, DrawsNoneOfTheCallersRandomNumbers) {
    const auto entries = randomEntries(800, 30.0f, 14);
    OptimizeOrient::seedRandom(5);
    const int expected = nextRandom();
    OptimizeOrient::seedRandom(5);
    const TriangleRectTree tree(entries);
    EXPECT_EQ(nextRandom(), expected);
}

/// Entries in four corners of a square, eight each, in mixed order; the corner is triangle % 4.
std::vector<TriangleRect> entriesInFourCorners() {
    std::vector<TriangleRect> entries;
    for (int i = 0; i < 32; ++i) {
        const auto within = static_cast<float>((i * 13) % 32);
        const UPoint2<float> p((i & 1) != 0 ? 100.0f + within : within,
                               (i & 2) != 0 ? 100.0f + within : within);
        entries.push_back({{p.x, p.x, p.y, p.y}, p, i});
    }
    return entries;
}

/// How many entries of the same leaf agree with the given one in some bits of the triangle.
std::ptrdiff_t alikeInLeaf(const std::vector<TriangleRect>& entries, std::size_t one, int bits) {
    const std::vector<int> leaf = leafOf(entries, one);
    EXPECT_EQ(leaf.size(), 8u);
    const int triangle = entries[one].triangle;
    return std::count_if(leaf.begin(), leaf.end(),
                         [&](int other) { return ((other ^ triangle) & bits) == 0; });
}

TEST(TriangleRectTree, TheRootIsSplitByYAndItsChildrenByX) {
    // Each selection may leave one entry on the wrong side.
    const std::vector<TriangleRect> all = entriesInFourCorners();
    const std::vector<TriangleRect> half(all.begin(), all.begin() + 16);
    for (std::size_t i = 0; i < half.size(); ++i) {
        const std::ptrdiff_t alike = alikeInLeaf(half, i, 2);
        EXPECT_TRUE(alike <= 1 || alike >= 7) << alike << " of 8 lie on one side along y";
    }
    int together = 0;
    for (std::size_t i = 0; i < all.size(); ++i) together += alikeInLeaf(all, i, 3) >= 6 ? 1 : 0;
    EXPECT_GE(together, 24);
}

TEST(TriangleRectTree, TheVisitorReceivesTheTrianglesOwnIndex) {
    auto entries = randomEntries(40, 2.0f, 12);
    for (TriangleRect& entry : entries) entry.triangle = 1000 - 3 * entry.triangle;
    const TriangleRectTree tree(entries);
    for (const TriangleRect& entry : entries) {
        const std::vector<int> visited = visitedAt(tree, middleOf(entry.rect));
        EXPECT_EQ(std::count(visited.begin(), visited.end(), entry.triangle), 1);
    }
}

TEST(TriangleRectTree, EqualCentroidsTakeNoLongerThanOthers) {
    // In quadratic time this would take many minutes.
    constexpr int kCount = 1000000;
    std::vector<TriangleRect> entries(kCount);
    for (int i = 0; i < kCount; ++i) entries[static_cast<std::size_t>(i)].triangle = i;
    EXPECT_TRUE(visitedAt(TriangleRectTree(std::move(entries)), {0, 0}).empty());
}

TEST(TriangleRectTree, APointThatIsNoNumberVisitsNothing) {
    const TriangleRectTree tree(randomEntries(50, 90.0f, 15));
    EXPECT_TRUE(visitedAt(tree, {kNan, 50.0f}).empty());
    EXPECT_TRUE(visitedAt(tree, {50.0f, kNan}).empty());
}

TEST(TriangleRectTree, PointsInOneLineStillDivideEvenly) {
    std::vector<TriangleRect> entries;
    const int n = testsAreSmall() ? 2000 : 50000;
    for (int i = 0; i < n; ++i) {
        const auto x = static_cast<float>(i);
        entries.push_back({{x, x, x, x}, {x, x}, i});
    }
    const TriangleRectTree tree(entries);
    for (int i = 0; i < n; i += 97) {
        const auto x = static_cast<float>(i);
        ASSERT_LE(visitedAt(tree, {x, x}).size(), 8u);
    }
}

}  // namespace

#include "pose/facets/FacetsFromAbove.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "tools/TestRandom.h"

using namespace Tesk::pose;

namespace {

/// Rectangles of very different sizes, so that each grid and the tree have some.
std::vector<FacetFromAbove> someFacets(int count, TestRandom& random) {
    std::vector<FacetFromAbove> facets;
    for (int i = 0; i < count; ++i) {
        const float x = random.in(-50.0f, 50.0f);
        const float y = random.in(0.0f, 20.0f);
        const float width = random.in(0.0f, 1.0f);
        const float size = width * width * width * width * 40.0f;
        const float depth = random.in(0.0f, 1.0f) * size;
        facets.push_back({{x, x + size, y, y + depth}, random.in(0.0f, 30.0f), i});
    }
    return facets;
}

/// All that are asked about, once each.
std::set<std::int32_t> askedBelow(const FacetsFromAbove& facets, const UPoint2<float>& p, float z) {
    std::set<std::int32_t> asked;
    EXPECT_FALSE(facets.anyBelow(p, z, [&](const FacetFromAbove& facet) {
        EXPECT_TRUE(asked.insert(facet.facet).second);
        return false;
    }));
    return asked;
}

TEST(FacetsFromAbove, AreFoundAsByAPlainSearch) {
    TestRandom random(3);
    for (const int count : {0, 1, 7, 3000}) {
        const std::vector<FacetFromAbove> facets = someFacets(count, random);
        const FacetsFromAbove found(facets);
        for (int round = 0; round < 500; ++round) {
            UPoint2<float> p(random.in(-60.0f, 60.0f), random.in(-5.0f, 25.0f));
            // A corner of a rectangle belongs to it.
            if (count > 0 && round % 3 == 0) {
                const auto& rect = facets[static_cast<std::size_t>(random.below(count))].rect;
                p = {rect.maxX, rect.minY};
            }
            const float z = random.in(0.0f, 40.0f);
            std::set<std::int32_t> expected;
            for (const FacetFromAbove& facet : facets) {
                if (facet.rect.contains(p) && facet.lowest < z) expected.insert(facet.facet);
            }
            EXPECT_EQ(askedBelow(found, p, z), expected);
        }
    }
}

TEST(FacetsFromAbove, OneAnswerIsEnough) {
    TestRandom random(4);
    std::vector<FacetFromAbove> facets = someFacets(100, random);
    for (FacetFromAbove& facet : facets) facet.rect = {0.0f, 1.0f, 0.0f, 1.0f};
    const FacetsFromAbove found(facets);
    int calls = 0;
    EXPECT_TRUE(found.anyBelow({0.5f, 0.5f}, 50.0f, [&](const FacetFromAbove&) {
        ++calls;
        return true;
    }));
    EXPECT_EQ(calls, 1);
}

TEST(FacetsFromAbove, MayLieAnywhere) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::vector<FacetFromAbove> facets = {{{-infinity, infinity, 0.0f, 1.0f}, 0.0f, 0},
                                                {{}, 0.0f, 1},
                                                {{0.0f, 1e38f, -1e38f, 1e38f}, -infinity, 2},
                                                {{nan, nan, nan, nan}, nan, 3},
                                                {{0.0f, 1.0f, 0.0f, 1.0f}, 0.0f, 4}};
    const FacetsFromAbove found(facets);
    EXPECT_EQ(askedBelow(found, {0.5f, 0.5f}, 1.0f), (std::set<std::int32_t>{0, 2, 4}));
    EXPECT_EQ(askedBelow(found, {nan, 0.5f}, 1.0f), std::set<std::int32_t>());
}

}  // namespace

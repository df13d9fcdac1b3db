#include "orient/candidates/DirectionBuckets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>

#include "orient/candidates/DirectionKey.h"
#include "tools/TestRandom.h"

using namespace Tesk::orient;

namespace {

using Direction = UVector3<float>;

/// Unit vectors, some of them along axes and at the ends of cells, and now and then rubbish.
std::vector<Direction> someDirections(int count) {
    TestRandom random(61);
    const float rubbish[] = {
        std::nanf(""), std::numeric_limits<float>::infinity(), -3e38f, 1.5f, -1.0034f, 0.0f, -0.0f};
    std::vector<Direction> directions;
    for (int i = 0; i < count; ++i) {
        Direction d(random.in(-1, 1), 0, 0);
        d.y = random.in(-1, 1);
        d.z = random.in(-1, 1);
        d = d.GetNormal();
        if (i % 5 == 0) d[random.below(3)] = static_cast<float>(random.below(133) - 66) * 0.015f;
        if (i % 11 == 0) d[random.below(3)] = rubbish[random.below(7)];
        directions.push_back(d);
    }
    return directions;
}

TEST(DirectionBuckets, CellsAreThoseOfTheKeyAndNoOthers) {
    std::map<std::int64_t, std::uint32_t> cells;
    std::map<std::uint32_t, std::int64_t> keys;
    int beyond = 0;
    for (const Direction& d : someDirections(200'000)) {
        const std::uint32_t cell = DirectionBuckets::cellOf(d);
        if (cell == DirectionBuckets::kBeyond) {
            ++beyond;
            continue;
        }
        const std::int64_t key = directionKey(d);
        EXPECT_EQ(cells.try_emplace(key, cell).first->second, cell);
        EXPECT_EQ(keys.try_emplace(cell, key).first->second, key);
    }
    EXPECT_GT(beyond, 0);
}

TEST(DirectionBuckets, EveryThousandthIsInTheCellOfItsKey) {
    const std::uint32_t middle = DirectionBuckets::cellOf({0, 0, 0});
    for (int thousandth = -1003; thousandth <= 1003; ++thousandth) {
        const float x = (static_cast<float>(thousandth) + (thousandth < 0 ? -0.5f : 0.5f)) * 0.001f;
        const auto key = static_cast<std::int64_t>(DirectionBuckets::cellOf({x, 0, 0})) -
                         static_cast<std::int64_t>(middle);
        const int shifted = thousandth + 15;
        EXPECT_EQ(key, shifted / 30) << "thousandth " << thousandth;
    }
}

TEST(DirectionBuckets, TheFullestComeFirstAndTiesGoByIndex) {
    const std::vector<Direction> directions = someDirections(30'000);
    std::map<std::int64_t, DirectionBucket> expected;
    DirectionBuckets buckets;
    for (int round = 0; round < 2; ++round) {
        expected.clear();
        for (std::size_t i = 0; i < directions.size(); ++i) {
            const auto index = static_cast<std::int32_t>(i);
            const std::int64_t key = directionKey(directions[i]);
            expected[key] = {index, expected[key].count + 1, directions[i]};
            buckets.add(DirectionBuckets::cellOf(directions[i]), directions[i], index);
        }
        std::vector<DirectionBucket> all;
        for (const auto& [key, bucket] : expected) all.push_back(bucket);
        std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) {
            return a.count != b.count ? a.count > b.count : a.index < b.index;
        });
        const std::size_t most = round == 0 ? 50 : all.size() + 7;
        const std::vector<DirectionBucket> fullest = buckets.takeFullest(most);
        ASSERT_EQ(fullest.size(), std::min(most, all.size()));
        for (std::size_t i = 0; i < fullest.size(); ++i) {
            EXPECT_EQ(fullest[i].index, all[i].index);
            EXPECT_EQ(fullest[i].count, all[i].count);
        }
    }
    EXPECT_TRUE(buckets.takeFullest(10).empty());
}

TEST(DirectionBuckets, WhatSeveralHaveCountedIsWhatOneWouldHave) {
    const std::vector<Direction> directions = someDirections(30'000);
    std::array<DirectionBuckets, 3> shares;
    DirectionBuckets whole;
    for (int round = 0; round < 2; ++round) {
        for (std::size_t i = 0; i < directions.size(); ++i) {
            const auto index = static_cast<std::int32_t>(i);
            const std::uint32_t cell = DirectionBuckets::cellOf(directions[i]);
            // Runs of indices, in no order among the shares.
            shares[i / 500 * 7 % 3].add(cell, directions[i], index);
            whole.add(cell, directions[i], index);
        }
        shares[1].take(shares[2]);
        shares[1].take(shares[0]);
        EXPECT_TRUE(shares[0].takeFullest(1).empty());
        const std::vector<DirectionBucket> found = shares[1].takeFullest(100'000);
        const std::vector<DirectionBucket> expected = whole.takeFullest(100'000);
        ASSERT_EQ(found.size(), expected.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            ASSERT_EQ(found[i].index, expected[i].index);
            ASSERT_EQ(found[i].count, expected[i].count);
            ASSERT_TRUE(found[i].last == expected[i].last || found[i].last.x != found[i].last.x ||
                        found[i].last.y != found[i].last.y || found[i].last.z != found[i].last.z);
        }
    }
}

TEST(DirectionBuckets, TheLastOfABucketStandsForIt) {
    DirectionBuckets buckets;
    for (const Direction& d : {Direction(0, 0, 1), Direction(0.001f, 0, 1)}) {
        buckets.add(DirectionBuckets::cellOf(d), d, 7);
    }
    const std::vector<DirectionBucket> fullest = buckets.takeFullest(10);
    ASSERT_EQ(fullest.size(), 1u);
    EXPECT_EQ(fullest[0].count, 2);
    EXPECT_EQ(fullest[0].last, Direction(0.001f, 0, 1));
}

}  // namespace

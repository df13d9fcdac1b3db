#include "TeskCommon/Groups.h"

#include <gtest/gtest.h>

using Tesk::Groups;

namespace {

/// The numbers 0 .. 9, grouped by their remainder.
Groups<int> byRemainder(std::size_t divisor, std::size_t groupCount) {
    return {groupCount, [divisor](auto visit) {
                for (int i = 0; i < 10; ++i) visit(static_cast<std::size_t>(i) % divisor, i);
            }};
}

std::vector<int> listOf(std::span<const int> items) {
    return {items.begin(), items.end()};
}

TEST(Groups, KeepTheOrderOfTheirItems) {
    const Groups<int> groups = byRemainder(3, 3);
    EXPECT_EQ(listOf(groups[0]), (std::vector{0, 3, 6, 9}));
    EXPECT_EQ(listOf(groups[1]), (std::vector{1, 4, 7}));
    EXPECT_EQ(listOf(groups[2]), (std::vector{2, 5, 8}));
}

TEST(Groups, MayBeEmpty) {
    const Groups<int> groups = byRemainder(2, 4);
    EXPECT_EQ(groups[1].size(), 5u);
    EXPECT_TRUE(groups[2].empty());
    EXPECT_TRUE(groups[3].empty());
}

TEST(Groups, CanBeChangedInPlace) {
    Groups<int> groups = byRemainder(5, 5);
    for (int& item : groups[4]) item = -item;
    EXPECT_EQ(listOf(groups[4]), (std::vector{-4, -9}));
    EXPECT_EQ(listOf(groups[3]), (std::vector{3, 8}));
}

}  // namespace

#include "text/Numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using Tesk::files::doubleOf;
using Tesk::files::floatOf;
using Tesk::files::wholeNumberOf;

TEST(Numbers, EveryFormOfADecimalNumberIsRead) {
    EXPECT_EQ(floatOf(".5"), 0.5f);
    EXPECT_EQ(floatOf("-.5"), -0.5f);
    EXPECT_EQ(floatOf("1."), 1.0f);
    EXPECT_EQ(floatOf("1.e3"), 1000.0f);
    EXPECT_EQ(floatOf("1e+03"), 1000.0f);
    EXPECT_EQ(floatOf("1E-2"), 0.01f);
    EXPECT_EQ(floatOf("+1"), 1.0f);
    EXPECT_EQ(floatOf("007"), 7.0f);
    EXPECT_TRUE(std::signbit(*floatOf("-0")));
}

TEST(Numbers, TheNearestFloatIsTaken) {
    // Just above the middle between two floats, which a step over double would round down to.
    EXPECT_EQ(floatOf("1.00000005960464477540"), std::nextafter(1.0f, 2.0f));
    EXPECT_EQ(floatOf("1.00000005960464477539"), 1.0f);
    EXPECT_EQ(floatOf("0.1"), 0.1f);
    EXPECT_EQ(doubleOf("0.1"), 0.1);
}

TEST(Numbers, BeyondTheRangeIsInfiniteOrZero) {
    const float infinite = std::numeric_limits<float>::infinity();
    EXPECT_EQ(floatOf("1e39"), infinite);
    EXPECT_EQ(floatOf("-1e39"), -infinite);
    EXPECT_EQ(floatOf("1e999"), infinite);
    EXPECT_EQ(floatOf("1" + std::string(400, '0')), infinite);
    EXPECT_EQ(floatOf("1e-60"), 0.0f);
    EXPECT_EQ(floatOf("1e-999"), 0.0f);
    EXPECT_EQ(floatOf("0." + std::string(400, '0') + "1"), 0.0f);
    EXPECT_GT(floatOf("1e-44"), 0.0f);
}

TEST(Numbers, WordsForNoNumberAreNumbersOfC) {
    EXPECT_TRUE(std::isnan(*floatOf("nan")));
    EXPECT_TRUE(std::isinf(*floatOf("-inf")));
}

TEST(Numbers, WhatIsLeftOverIsNoNumber) {
    for (const char* token : {"", "+", "-", ".", "1,5", "1.5x", "--1", "+-1", "0x10", "e5"}) {
        EXPECT_FALSE(floatOf(token)) << token;
        EXPECT_FALSE(doubleOf(token)) << token;
    }
}

TEST(Numbers, WholeNumbersMayHaveASignAndNothingElse) {
    EXPECT_EQ(wholeNumberOf("+3"), 3);
    EXPECT_EQ(wholeNumberOf("-3"), -3);
    for (const char* token : {"", "3.0", "1e3", "99999999999999999999", "3/4"}) {
        EXPECT_FALSE(wholeNumberOf(token)) << token;
    }
}

}  // namespace

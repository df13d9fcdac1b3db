#include "TeskDataBasic/Transcendental.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "tools/FloatBits.h"
#include "tools/TestRandom.h"

namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kUlp = std::numeric_limits<double>::epsilon();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// The distance from the true value in units of the last place of a double of its size.
double ulpsOff(double value, long double exact) {
    const double size = std::fabs(static_cast<double>(exact));
    const double unit = size == 0.0 ? std::numeric_limits<double>::denorm_min()
                                    : std::nextafter(size, kInfinity) - size;
    return static_cast<double>(std::fabs(static_cast<long double>(value) - exact)) / unit;
}

const char* const kNoJudge = "the C library's long double functions are less exact than ours";

/// MinGW's leave these functions to the processor's own, which lose digits. The bits that are
/// compared below hold there too.
constexpr bool isJudgeExact() {
#if defined(__MINGW32__)
    return false;
#else
    return true;
#endif
}

double anyDouble(TestRandom& random, double low, double high) {
    return low + (high - low) * (static_cast<double>(random.bits() >> 11) * 0x1p-53);
}

TEST(Transcendental, SpecialAnglesAreExact) {
    EXPECT_EQ(Tesk::cosine(0.0), 1.0);
    EXPECT_EQ(Tesk::sine(0.0), 0.0);
    EXPECT_EQ(Tesk::cosine(kPi), -1.0);
    EXPECT_EQ(Tesk::sine(kPi / 2), 1.0);
    EXPECT_EQ(Tesk::arcCosine(1.0), 0.0);
    EXPECT_EQ(Tesk::arcCosine(-1.0), kPi);
    EXPECT_EQ(Tesk::arcCosine(0.0), kPi / 2);
    EXPECT_EQ(static_cast<float>(Tesk::cosine(45.0 * kPi / 180.0)), 0.70710677f);
    EXPECT_EQ(static_cast<float>(Tesk::cosine(60.0 * kPi / 180.0)), 0.5f);
}

TEST(Transcendental, CosineAndSineStayWithinTwoUnitsOfTheLastPlace) {
    TestRandom random(1);
    double worst = 0.0;
    for (int i = 0; i < 200000; ++i) {
        const double angle = anyDouble(random, -10.0, 10.0);
        const long double exactCosine = std::cos(static_cast<long double>(angle));
        const long double exactSine = std::sin(static_cast<long double>(angle));
        if (std::fabs(exactCosine) > 1e-3L) {
            worst = std::max(worst, ulpsOff(Tesk::cosine(angle), exactCosine));
        }
        if (std::fabs(exactSine) > 1e-3L) {
            worst = std::max(worst, ulpsOff(Tesk::sine(angle), exactSine));
        }
    }
    EXPECT_LT(worst, 2.0);
}

TEST(Transcendental, CosineAndSineAreAccurateBesideTheirZeros) {
    TestRandom random(2);
    for (int quarter = -40; quarter <= 40; ++quarter) {
        for (int i = 0; i < 200; ++i) {
            const double angle = quarter * (kPi / 2) + anyDouble(random, -1e-4, 1e-4);
            ASSERT_NEAR(Tesk::cosine(angle),
                        static_cast<double>(std::cos(static_cast<long double>(angle))), kUlp);
            ASSERT_NEAR(Tesk::sine(angle),
                        static_cast<double>(std::sin(static_cast<long double>(angle))), kUlp);
        }
    }
}

TEST(Transcendental, CosineAndSineHoldUpToAMillionTurns) {
    if (!isJudgeExact()) GTEST_SKIP() << kNoJudge;
    TestRandom random(3);
    for (int i = 0; i < 100000; ++i) {
        const double angle = anyDouble(random, -1e6, 1e6);
        ASSERT_NEAR(Tesk::cosine(angle),
                    static_cast<double>(std::cos(static_cast<long double>(angle))), 2 * kUlp);
        ASSERT_NEAR(Tesk::sine(angle),
                    static_cast<double>(std::sin(static_cast<long double>(angle))), 2 * kUlp);
    }
}

TEST(Transcendental, CosineIsEvenAndSineIsOdd) {
    TestRandom random(4);
    for (int i = 0; i < 20000; ++i) {
        const double angle = anyDouble(random, 0.0, 100.0);
        ASSERT_NEAR(Tesk::cosine(-angle), Tesk::cosine(angle), kUlp);
        ASSERT_NEAR(Tesk::sine(-angle), -Tesk::sine(angle), kUlp);
    }
}

TEST(Transcendental, AnglesThatAreNotFiniteGiveNoNumber) {
    for (const double angle : {kNan, kInfinity, -kInfinity}) {
        EXPECT_TRUE(std::isnan(Tesk::cosine(angle)));
        EXPECT_TRUE(std::isnan(Tesk::sine(angle)));
    }
    // Finite ones beyond all reason end and stay without meaning.
    EXPECT_EQ(Tesk::cosine(1e300), 0.0);
    EXPECT_EQ(Tesk::sine(-1e16), 0.0);
}

TEST(Transcendental, ArcCosineStaysWithinTwoUnitsOfTheLastPlace) {
    if (!isJudgeExact()) GTEST_SKIP() << kNoJudge;
    TestRandom random(5);
    double worst = 0.0;
    for (int i = 0; i < 200000; ++i) {
        const double c = anyDouble(random, -1.0, 1.0);
        worst =
            std::max(worst, ulpsOff(Tesk::arcCosine(c), std::acos(static_cast<long double>(c))));
    }
    for (int power = 1; power < 50; ++power) {
        const double c = 1.0 - std::ldexp(1.0, -power);
        for (const double near : {c, -c}) {
            worst = std::max(
                worst, ulpsOff(Tesk::arcCosine(near), std::acos(static_cast<long double>(near))));
        }
    }
    EXPECT_LT(worst, 2.0);
}

TEST(Transcendental, ArcCosineRoundedToFloatIsTheRoundedTrueValue) {
    TestRandom random(6);
    int different = 0;
    for (int i = 0; i < 300000; ++i) {
        const double c = static_cast<double>(random.in(-1.0f, 1.0f));
        const auto exact = static_cast<float>(std::acos(static_cast<long double>(c)));
        different += static_cast<float>(Tesk::arcCosine(c)) != exact ? 1 : 0;
    }
    EXPECT_EQ(different, 0);
}

TEST(Transcendental, ACosineBeyondOneCountsAsTheEnd) {
    EXPECT_EQ(Tesk::arcCosine(1.0000001), 0.0);
    EXPECT_EQ(Tesk::arcCosine(-1.5), kPi);
    EXPECT_EQ(Tesk::arcCosine(kInfinity), 0.0);
    EXPECT_EQ(Tesk::arcCosine(-kInfinity), kPi);
    EXPECT_TRUE(std::isnan(Tesk::arcCosine(kNan)));
}

TEST(Transcendental, TheAngleOfADirectionIsAccurateEverywhere) {
    TestRandom random(7);
    for (int i = 0; i < 100000; ++i) {
        const double angle = i % 2 == 0 ? anyDouble(random, 0.0, kPi)
                                        : std::ldexp(anyDouble(random, 0.5, 1.0), -(i % 60));
        const double size = std::ldexp(1.0, i % 40 - 20);
        const double s = std::sin(angle) * size;
        const double c = std::cos(angle) * size;
        const long double exact =
            std::atan2(static_cast<long double>(s), static_cast<long double>(c));
        ASSERT_NEAR(Tesk::angleOf(s, c), static_cast<double>(exact),
                    8 * kUlp * std::fabs(static_cast<double>(exact)));
    }
}

TEST(Transcendental, TheAngleOfNoDirectionIsZero) {
    EXPECT_EQ(Tesk::angleOf(0.0, 0.0), 0.0);
    EXPECT_EQ(Tesk::angleOf(0.0, 2.0), 0.0);
    EXPECT_EQ(Tesk::angleOf(0.0, -2.0), kPi);
    EXPECT_EQ(Tesk::angleOf(3.0, 0.0), kPi / 2);
}

TEST(Transcendental, TheBitsAreTheSameOnEveryPlatform) {
    TestRandom random(8);
    BitHash hash;
    for (int i = 0; i < 200000; ++i) {
        const double angle = anyDouble(random, -1e6, 1e6);
        const double c = anyDouble(random, -1.0, 1.0);
        hash.add(Tesk::cosine(angle));
        hash.add(Tesk::sine(angle));
        hash.add(Tesk::arcCosine(c));
        hash.add(Tesk::angleOf(c, angle));
    }
    EXPECT_EQ(hash.value(), 9163389519378472087u);
}

}  // namespace

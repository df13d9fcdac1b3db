#include "TeskMeshData/TeskMath.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tools/TestRandom.h"

namespace {

using Math = TeskMath<float>;
using Vector = UVector3<float>;
using Point = UPoint3<float>;

constexpr float kPi = std::numbers::pi_v<float>;

TEST(TeskMath, TheAreaOfATriangleIsHalfTheLengthOfItsProduct) {
    EXPECT_EQ(Math::CalculateTriangleArea({0, 0, 0}, {1, 0, 0}, {0, 1, 0}), 0.5f);
    EXPECT_EQ(Math::CalculateTriangleArea({1, 1, 1}, {1, 4, 1}, {1, 1, 5}), 6.0f);
    EXPECT_EQ(Math::CalculateTriangleArea({0, 0, 0}, {1, 1, 1}, {2, 2, 2}), 0.0f);
    EXPECT_EQ(Math::CalculateTriangleArea({3, 3, 3}, {3, 3, 3}, {3, 3, 3}), 0.0f);
}

TEST(TeskMath, TheAngleBetweenVectorsDoesNotDependOnTheirLength) {
    EXPECT_EQ(Math::AngleBetween({1, 0, 0}, {0, 1, 0}), kPi / 2);
    EXPECT_EQ(Math::AngleBetween({5, 0, 0}, {0, 0, 1e-30f}), kPi / 2);
    EXPECT_FLOAT_EQ(Math::AngleBetween({1, 0, 0}, {1e20f, 1e20f, 0}), kPi / 4);
    EXPECT_EQ(Math::AngleBetween({1, 2, 3}, {1, 2, 3}), 0.0f);
    EXPECT_EQ(Math::AngleBetween({1, 2, 3}, {-1, -2, -3}), kPi);
}

TEST(TeskMath, TheAngleWithAZeroVectorIsZero) {
    EXPECT_EQ(Math::AngleBetween({0, 0, 0}, {1, 0, 0}), 0.0f);
    EXPECT_EQ(Math::AngleBetween({0, 1, 0}, {0, 0, 0}), 0.0f);
    EXPECT_EQ(Math::AngleBetween({0, 0, 0}, {0, 0, 0}), 0.0f);
}

TEST(TeskMath, SmallAnglesAreAccurate) {
    for (const float angle : {1e-2f, 1e-3f, 1e-4f, 1e-5f, 1e-6f, 1e-10f, 1e-20f}) {
        // Up to 1e-2 the tangent is the angle within angle³/3.
        const auto expected = static_cast<float>(std::atan(static_cast<double>(angle)));
        EXPECT_FLOAT_EQ(Math::AngleBetween({0, 0, 1}, {angle, 0, 1}), expected);
        EXPECT_FLOAT_EQ(Math::AngleBetween({0, 0, 7}, {0, 7 * angle, 7}), expected);
    }
}

TEST(TeskMath, AnglesNearPiAreAccurate) {
    for (const float angle : {1e-2f, 1e-3f, 1e-4f, 1e-5f, 1e-6f}) {
        const double expected = std::numbers::pi - std::atan(static_cast<double>(angle));
        EXPECT_FLOAT_EQ(Math::AngleBetween({0, 0, 1}, {angle, 0, -1}),
                        static_cast<float>(expected));
    }
}

TEST(TeskMath, AnyAngleAgreesWithTheOneItWasMadeFrom) {
    TestRandom random(9);
    for (int i = 0; i < 20000; ++i) {
        const double angle = random.in(0.0f, kPi);
        const float size = random.in(0.1f, 50.0f);
        const Vector a(size, 0, 0);
        const Vector b(static_cast<float>(size * std::cos(angle)), 0,
                       static_cast<float>(size * std::sin(angle)));
        ASSERT_NEAR(Math::AngleBetween(a, b), angle, 1e-6);
        ASSERT_EQ(Math::AngleBetween(a, b), Math::AngleBetween(b, a));
    }
}

}  // namespace

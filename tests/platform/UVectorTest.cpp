#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "TeskDataBasic/UPoint2.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector2.h"
#include "TeskDataBasic/UVector3.h"
#include "tools/TestRandom.h"

namespace {

using Vector = UVector3<float>;
using Point = UPoint3<float>;

TEST(UVector3, TheProductOfTwoIsTheRightHandedVectorProduct) {
    EXPECT_EQ(Vector(1, 0, 0) * Vector(0, 1, 0), Vector(0, 0, 1));
    EXPECT_EQ(Vector(0, 1, 0) * Vector(0, 0, 1), Vector(1, 0, 0));
    EXPECT_EQ(Vector(1, 2, 3) * Vector(4, 5, 6), Vector(-3, 6, -3));
}

TEST(UVector3, TheBarIsTheDotProduct) {
    EXPECT_EQ(Vector(1, 2, 3) | Vector(4, 5, 6), 32.0f);
    EXPECT_EQ(Vector(1, 2, 3).Dot({4, 5, 6}), 32.0f);
}

TEST(UVector3, AddsSubtractsAndScales) {
    EXPECT_EQ(Vector(1, 2, 3) + Vector(4, 5, 6), Vector(5, 7, 9));
    EXPECT_EQ(Vector(1, 2, 3) - Vector(4, 6, 8), Vector(-3, -4, -5));
    EXPECT_EQ(Vector(1, 2, 3) * 2.0f, Vector(2, 4, 6));
}

TEST(UVector3, ADefaultOneIsZeroAndComponentsGoByIndex) {
    EXPECT_EQ(Vector(), Vector(0, 0, 0));
    Vector v(7, 8, 9);
    EXPECT_EQ(v[0], 7.0f);
    EXPECT_EQ(v[1], 8.0f);
    EXPECT_EQ(v[2], 9.0f);
    v[0] = 1;
    v[1] = 2;
    v[2] = 3;
    EXPECT_EQ(v, Vector(1, 2, 3));
    const Vector constant = v;
    EXPECT_EQ(constant[0] + constant[1] + constant[2], 6.0f);
}

TEST(UVector3, TheZeroVectorStaysZeroWhenNormalised) {
    EXPECT_EQ(Vector().GetNormal(), Vector());
    EXPECT_EQ(Vector().GetNormal().GetLength(), 0.0f);
    Vector v;
    v.Normalize();
    EXPECT_EQ(v, Vector());
}

TEST(UVector3, VectorsOfAnySizeAreNormalised) {
    for (const float size : {1e-38f, 1e-30f, 1e-20f, 1e-10f, 1.0f, 1e10f, 1e19f, 1e38f}) {
        const Vector n = Vector(3 * size, 0, 0).GetNormal();
        EXPECT_EQ(n, Vector(1, 0, 0)) << size;
        EXPECT_NEAR(Vector(size, -size, size).GetNormal().GetLength(), 1.0f, 1e-6f) << size;
    }
    const float smallest = std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(Vector(0, smallest, 0).GetNormal(), Vector(0, 1, 0));
}

TEST(UVector3, NormalisingDividesByTheLength) {
    TestRandom random(3);
    for (int i = 0; i < 5000; ++i) {
        const float x = random.in(-9.0f, 9.0f);
        const float y = random.in(-9.0f, 9.0f);
        const float z = random.in(-9.0f, 9.0f);
        const double length = std::sqrt(static_cast<double>(x) * x + static_cast<double>(y) * y +
                                        static_cast<double>(z) * z);
        const Vector n = Vector(x, y, z).GetNormal();
        ASSERT_EQ(n.x, static_cast<float>(x / length));
        ASSERT_EQ(n.y, static_cast<float>(y / length));
        ASSERT_EQ(n.z, static_cast<float>(z / length));
    }
}

TEST(UVector3, NormalizeInPlaceEqualsGetNormal) {
    Vector v(1, 2, 3);
    v.Normalize();
    EXPECT_EQ(v, Vector(1, 2, 3).GetNormal());
}

TEST(UVector3, TheLengthNeitherOverflowsNorVanishes) {
    EXPECT_EQ(Vector(3, 4, 0).GetLength(), 5.0f);
    EXPECT_EQ(Vector(3e30f, 4e30f, 0).GetLength(), 5e30f);
    EXPECT_EQ(Vector(0, 0, 1e-40f).GetLength(), 1e-40f);
    EXPECT_TRUE(std::isnan(Vector(std::nanf(""), 0, 0).GetLength()));
}

TEST(UVector2, TheProductOfTwoIsTwiceTheSignedArea) {
    EXPECT_EQ(UVector2<float>(1, 0) * UVector2<float>(0, 1), 1.0f);
    EXPECT_EQ(UVector2<float>(0, 1) * UVector2<float>(1, 0), -1.0f);
    EXPECT_EQ(UVector2<float>(2, 3) * UVector2<float>(4, 6), 0.0f);
    EXPECT_EQ(UVector2<float>(), UVector2<float>(0, 0));
}

TEST(UPoint2, TheDifferenceOfTwoIsAVector) {
    EXPECT_EQ(UPoint2<float>(5, 7) - UPoint2<float>(1, 2), UVector2<float>(4, 5));
    EXPECT_EQ(UPoint2<float>(), UPoint2<float>(0, 0));
}

TEST(UPoint3, DifferencesAndSums) {
    EXPECT_EQ(Point(5, 7, 9) - Point(1, 2, 3), Vector(4, 5, 6));
    EXPECT_EQ(Point(1, 2, 3) + Vector(4, 5, 6), Point(5, 7, 9));
    Point p(1, 2, 3);
    p[0] = p[1] = p[2] = 4;
    EXPECT_EQ(p, Point(4, 4, 4));
    const Point constant(1, 2, 3);
    EXPECT_EQ(constant[0] * 100 + constant[1] * 10 + constant[2], 123.0f);
}

TEST(UPoint3, TransformingSumsInTheOrderOfTheCoordinates) {
    TestRandom random(8);
    for (int i = 0; i < 2000; ++i) {
        UMatrix4<float> m;
        for (int row = 0; row < 4; ++row) {
            for (int col = 0; col < 3; ++col) m.at(row, col) = random.in(-9.0f, 9.0f);
        }
        const float x = random.in(-99.0f, 99.0f);
        const float y = random.in(-99.0f, 99.0f);
        const Point p(x, y, random.in(-99.0f, 99.0f));
        const Point q = p * m;
        for (int col = 0; col < 3; ++col) {
            float sum = p.x * m.at(0, col);
            sum += p.y * m.at(1, col);
            sum += p.z * m.at(2, col);
            sum += m.at(3, col);
            ASSERT_EQ(q[col], sum);
        }
    }
}

}  // namespace

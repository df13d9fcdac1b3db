#include "TeskDataBasic/UMatrix4.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "TeskDataBasic/UPoint3.h"
#include "tools/TestRandom.h"

namespace {

using Matrix = UMatrix4<float>;
using Vector = UVector3<float>;
using Point = UPoint3<float>;

constexpr float kPi = std::numbers::pi_v<float>;

void expectNear(const Point& p, const Point& expected, float tolerance = 1e-6f) {
    EXPECT_NEAR(p.x, expected.x, tolerance);
    EXPECT_NEAR(p.y, expected.y, tolerance);
    EXPECT_NEAR(p.z, expected.z, tolerance);
}

TEST(UMatrix4, ADefaultOneIsTheIdentity) {
    const Matrix m;
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) EXPECT_EQ(m.at(row, col), row == col ? 1.0f : 0.0f);
    }
    EXPECT_TRUE(m.isIdenticalMatrix());
    EXPECT_EQ(Point(1, 2, 3) * m, Point(1, 2, 3));
}

TEST(UMatrix4, TheSlightestChangeIsNoIdentity) {
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            Matrix m;
            m.at(row, col) = std::nextafter(m.at(row, col), 5.0f);
            EXPECT_FALSE(m.isIdenticalMatrix());
        }
    }
}

TEST(UMatrix4, ATranslationStandsInTheLastRow) {
    const Matrix m = Matrix::CreateTransfMatrix({4, 5, 6});
    EXPECT_EQ(m.at(3, 0), 4.0f);
    EXPECT_EQ(m.at(3, 1), 5.0f);
    EXPECT_EQ(m.at(3, 2), 6.0f);
    EXPECT_EQ(Point(1, 2, 3) * m, Point(5, 7, 9));
}

TEST(UMatrix4, InAProductTheLeftFactorActsFirst) {
    const Matrix move = Matrix::CreateTransfMatrix({1, 0, 0});
    const Matrix turn = Matrix::CreateRotateMatrix(kPi / 2, {0, 0, 1});
    expectNear(Point(0, 0, 0) * (move * turn), {0, 1, 0});
    expectNear(Point(0, 0, 0) * (turn * move), {1, 0, 0});
    Matrix both = move;
    both *= turn;
    EXPECT_EQ(both, move * turn);
    both *= both;
    EXPECT_EQ(both, (move * turn) * (move * turn));
}

TEST(UMatrix4, EveryEntryOfAProductIsSummedInOrder) {
    TestRandom random(2);
    for (int round = 0; round < 500; ++round) {
        Matrix a;
        Matrix b;
        for (int row = 0; row < 4; ++row) {
            for (int col = 0; col < 4; ++col) {
                a.at(row, col) = random.in(-1.0f, 1.0f);
                b.at(row, col) = random.in(-1.0f, 1.0f);
            }
        }
        const Matrix product = a * b;
        for (int row = 0; row < 4; ++row) {
            for (int col = 0; col < 4; ++col) {
                float sum = a.at(row, 0) * b.at(0, col);
                for (int k = 1; k < 4; ++k) sum += a.at(row, k) * b.at(k, col);
                ASSERT_EQ(product.at(row, col), sum);
            }
        }
    }
}

TEST(UMatrix4, RotationsAreRightHanded) {
    expectNear(Point(1, 0, 0) * Matrix::CreateRotateMatrix(kPi / 2, {0, 0, 1}), {0, 1, 0});
    expectNear(Point(0, 1, 0) * Matrix::CreateRotateMatrix(kPi / 2, {1, 0, 0}), {0, 0, 1});
    expectNear(Point(0, 0, 1) * Matrix::CreateRotateMatrix(kPi / 2, {0, 1, 0}), {1, 0, 0});
    expectNear(Point(1, 0, 0) * Matrix::CreateRotateMatrix(2 * kPi / 3, {1, 1, 1}), {0, 1, 0});
}

TEST(UMatrix4, ARotationKeepsItsAxisAndAllLengths) {
    TestRandom random(4);
    for (int i = 0; i < 1000; ++i) {
        const float x = random.in(-5.0f, 5.0f);
        const float y = random.in(-5.0f, 5.0f);
        const Vector axis(x, y, random.in(-5.0f, 5.0f));
        const Matrix turn = Matrix::CreateRotateMatrix(random.in(-7.0f, 7.0f), axis);
        expectNear(Point(axis.x, axis.y, axis.z) * turn, {axis.x, axis.y, axis.z}, 1e-5f);
        const Point p = Point(y, x, 1.0f) * turn;
        ASSERT_NEAR((p - Point()).GetLength(), Vector(y, x, 1.0f).GetLength(), 1e-5f);
    }
}

TEST(UMatrix4, TheLengthOfTheAxisDoesNotMatter) {
    const Matrix turn = Matrix::CreateRotateMatrix(0.7f, {1, 0, 0});
    for (const float length : {1e-38f, 1e-30f, 1e-21f, 1e-10f, 3.0f, 1e10f, 1e30f}) {
        EXPECT_EQ(Matrix::CreateRotateMatrix(0.7f, {length, 0, 0}), turn) << length;
    }
}

TEST(UMatrix4, TheZeroAxisGivesTheIdentity) {
    EXPECT_TRUE(Matrix::CreateRotateMatrix(1.0f, {0, 0, 0}).isIdenticalMatrix());
    EXPECT_TRUE(Matrix::CreateRotateMatrix(0.0f, {0, 0, 0}).isIdenticalMatrix());
    EXPECT_TRUE(Matrix::CreateRotateMatrix(0.0f, {1, 2, 3}).isIdenticalMatrix());
}

TEST(UMatrix4, AHalfTurnAboutYTurnsDownUp) {
    expectNear(Point(0, 0, -1) * Matrix::CreateRotateMatrix(kPi, {0, 1, 0}), {0, 0, 1});
}

TEST(UMatrix4, TurningADirectionAboutItsProductWithUpBringsItUp) {
    TestRandom random(5);
    for (int i = 0; i < 1000; ++i) {
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        const Vector d = Vector(x, y, random.in(-1.0f, 1.0f)).GetNormal();
        const auto angle = static_cast<float>(std::atan2(std::hypot(d.x, d.y), d.z));
        const Matrix turn = Matrix::CreateRotateMatrix(angle, d * Vector(0, 0, 1));
        expectNear(Point(d.x, d.y, d.z) * turn, {0, 0, 1});
    }
}

}  // namespace

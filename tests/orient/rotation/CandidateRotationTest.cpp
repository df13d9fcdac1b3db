#include "orient/rotation/CandidateRotation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint3.h"
#include "plain/PlainEvaluation.h"
#include "tools/FloatBits.h"
#include "tools/TestRandom.h"

using namespace Tesk::orient;

namespace {

using Direction = UVector3<float>;
constexpr float kPi = std::numbers::pi_v<float>;

TEST(CandidateRotation, UpHasAngleZeroAndNoAxis) {
    EXPECT_EQ(candidateAxis({0, 0, 1}), Direction(0, 0, 0));
    EXPECT_EQ(candidateAngle({0, 0, 1}), 0.0f);
}

TEST(CandidateRotation, DownTurnsByPiAboutY) {
    EXPECT_EQ(candidateAxis({0, 0, -1}), Direction(0, 1, 0));
    EXPECT_EQ(candidateAngle({0, 0, -1}), 3.14159265f);
    EXPECT_EQ(candidateAxis({-0.0f, 0.0f, -1.0f}), Direction(0, 1, 0));
}

TEST(CandidateRotation, OnlyExactlyDownHasTheSpecialAxis) {
    EXPECT_EQ(candidateAxis({0.0f, 0.0f, -2.0f}), Direction(0, 0, 0));
    EXPECT_EQ(candidateAxis({1e-30f, 0.0f, -1.0f}), Direction(0.0f, -1e-30f, 0.0f));
}

TEST(CandidateRotation, TheAxisIsTheVectorProductAndNotNormalised) {
    EXPECT_EQ(candidateAxis({3.0f, 4.0f, 5.0f}), Direction(4.0f, -3.0f, 0.0f));
}

TEST(CandidateRotation, TheAngleDoesNotDependOnTheLength) {
    EXPECT_EQ(candidateAngle({0.0f, 2.0f, 2.0f}), candidateAngle({0.0f, 0.25f, 0.25f}));
    EXPECT_FLOAT_EQ(candidateAngle({0.0f, 5.0f, 5.0f}), kPi / 4);
    EXPECT_EQ(candidateAngle({7.0f, 0.0f, 0.0f}), kPi / 2);
}

TEST(CandidateRotation, TurningByItBringsTheDirectionUp) {
    TestRandom random(6);
    for (int i = 0; i < 2000; ++i) {
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        const Direction d = Direction(x, y, random.in(-1.0f, 1.0f)).GetNormal();
        const auto turn = UMatrix4<float>::CreateRotateMatrix(candidateAngle(d), candidateAxis(d));
        const UPoint3<float> up = UPoint3<float>(d.x, d.y, d.z) * turn;
        // The arc cosine of a float loses up to 3e-4 rad beside the ends of its range.
        ASSERT_NEAR(up.x, 0.0f, 5e-4f);
        ASSERT_NEAR(up.y, 0.0f, 5e-4f);
        ASSERT_NEAR(up.z, 1.0f, 1e-6f);
    }
}

TEST(CandidateRotation, AgreesWithThePlainVersion) {
    TestRandom random(61);
    for (int i = 0; i < 20000; ++i) {
        const float scale = std::ldexp(1.0f, random.below(60) - 30);
        const float x = random.in(-1.0f, 1.0f) * scale;
        const float y = random.in(-1.0f, 1.0f) * scale;
        const Direction d(x, y, random.in(-1.0f, 1.0f));
        ASSERT_TRUE(sameBits(candidateAngle(d), plainAngle(d)));
        ASSERT_EQ(candidateAxis(d), plainAxis(d));
    }
}

}  // namespace

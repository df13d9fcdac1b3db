#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "OrientOptimizer.h"

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;

TEST(Records, ConfigureHasEightFieldsOfFourBytesInOrder) {
    EXPECT_EQ(sizeof(Configure), 32u);
    EXPECT_EQ(offsetof(Configure, overhangAngle), 0u);
    EXPECT_EQ(offsetof(Configure, supportAreaWeight), 4u);
    EXPECT_EQ(offsetof(Configure, supportVolumeWeight), 8u);
    EXPECT_EQ(offsetof(Configure, heightWeight), 12u);
    EXPECT_EQ(offsetof(Configure, boxVolumeWeight), 16u);
    EXPECT_EQ(offsetof(Configure, computeSupport), 20u);
    EXPECT_EQ(offsetof(Configure, baseHeight), 24u);
    EXPECT_EQ(offsetof(Configure, reserved), 28u);
    EXPECT_TRUE(std::is_trivially_copyable_v<Configure>);
}

TEST(Records, OptOrientationHasItsFieldsInOrder) {
    EXPECT_EQ(sizeof(OptOrientation), 40u);
    EXPECT_EQ(offsetof(OptOrientation, axis), 0u);
    EXPECT_EQ(offsetof(OptOrientation, angle), 12u);
    EXPECT_EQ(offsetof(OptOrientation, overhangArea), 16u);
    EXPECT_EQ(offsetof(OptOrientation, supportVolume), 20u);
    EXPECT_EQ(offsetof(OptOrientation, projectedArea), 24u);
    EXPECT_EQ(offsetof(OptOrientation, height), 28u);
    EXPECT_EQ(offsetof(OptOrientation, boxVolume), 32u);
    EXPECT_EQ(offsetof(OptOrientation, score), 36u);
    EXPECT_TRUE(std::is_trivially_copyable_v<OptOrientation>);
}

TEST(Records, TheOptimizerHoldsNothingAndCanBeAssigned) {
    EXPECT_TRUE(std::is_empty_v<OrientOptimizer>);
    OrientOptimizer a;
    OrientOptimizer b;
    EXPECT_EQ(&(a = b), &a);
    EXPECT_EQ(&(a = OrientOptimizer()), &a);
}

}  // namespace

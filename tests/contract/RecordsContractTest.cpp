#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "HostMesh.h"

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;

TEST(RecordsContract, ConfigureHasItsSizeAndOrder) {
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

TEST(RecordsContract, OptOrientationHasItsSizeAndOrder) {
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

TEST(RecordsContract, TheDefaultsServePrinting) {
    const Configure config;
    EXPECT_EQ(config.overhangAngle, 45.0f);
    EXPECT_EQ(config.supportAreaWeight, 0);
    EXPECT_EQ(config.supportVolumeWeight, 3);
    EXPECT_EQ(config.heightWeight, 1);
    EXPECT_EQ(config.boxVolumeWeight, 1);
    EXPECT_EQ(config.computeSupport, 0);
    EXPECT_EQ(config.baseHeight, 0.0f);
}

TEST(RecordsContract, AnOrientOptimizerCanBeCopiedAndAssigned) {
    OrientOptimizer a;
    OrientOptimizer b(a);
    EXPECT_EQ(&(a = b), &a);
    EXPECT_EQ(&(a = OrientOptimizer()), &a);
    OrientOptimizer& same = a;
    EXPECT_EQ(&(a = same), &a);
    EXPECT_TRUE(std::is_nothrow_copy_assignable_v<OrientOptimizer>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<OrientOptimizer>);
    EXPECT_TRUE(std::is_empty_v<OrientOptimizer>);
}

}  // namespace

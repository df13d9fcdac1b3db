#include <gtest/gtest.h>

#include <ios>

#include "BuildPose.h"
#include "OmpThreads.h"
#include "PoseShapes.h"
#include "ReferenceShapes.h"
#include "tools/FloatBits.h"

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::BuildPoses;
using OptimizeOrient::findBuildPoses;

void addPose(const BuildPose& pose, BitHash& hash) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) hash.add(pose.rotation.at(row, col));
    }
    const OptimizeOrient::PoseMeasures& m = pose.measures;
    for (const float value : {m.height, m.footprintX, m.footprintY, m.supportVolume, m.overhangArea,
                              m.overhangAreaOnPart, m.contactArea, m.tiltMarginDeg}) {
        hash.add(value);
    }
    hash.add(static_cast<std::uint32_t>(m.contactIslands * 4 + m.liesFlat * 2 + m.stands));
}

std::uint64_t hashOf(const BuildPoses& result) {
    BitHash hash;
    for (const BuildPose& pose : result.poses) addPose(pose, hash);
    addPose(result.asItLies, hash);
    hash.add(static_cast<std::uint32_t>(result.passedOver.cannotStand));
    hash.add(static_cast<std::uint32_t>(result.noneStands));
    return hash.value();
}

class PosesOfShapes : public testing::TestWithParam<NamedPart> {};

TEST_P(PosesOfShapes, DoNotDependOnTheNumberOfThreads) {
    const MeshKernel mesh = GetParam().part.kernel(someTurn());
    const auto hashWith = [&](int threads) {
        const OmpThreads setting(threads);
        return hashOf(findBuildPoses(mesh, {}));
    };
    const std::uint64_t expected = hashWith(1);
    for (const int threads : {2, 3, 16}) EXPECT_EQ(hashWith(threads), expected) << threads;
}

TEST(Poses, HaveTheSameBitsOnEveryPlatform) {
    BitHash hash;
    for (const NamedPart& shape : referenceShapes()) {
        const std::uint64_t of = hashOf(findBuildPoses(shape.part.kernel(someTurn()), {}));
        hash.add(static_cast<std::uint32_t>(of));
        hash.add(static_cast<std::uint32_t>(of >> 32));
    }
    EXPECT_EQ(hash.value(), 0x1edb9f25e68b9559u) << std::hex << hash.value();
}

INSTANTIATE_TEST_SUITE_P(Determinism, PosesOfShapes, testing::ValuesIn(referenceShapes()),
                         [](const auto& shape) { return shape.param.name; });

}  // namespace

#include <gtest/gtest.h>

#include "BuildPose.h"
#include "PoseShapes.h"
#include "ReferenceShapes.h"
#include "shapes/SampleMeshes.h"
#include "tools/TestSize.h"

namespace {

using OptimizeOrient::BuildPoses;
using OptimizeOrient::findBuildPoses;

/// A part in its best pose stays there, or what is found then costs less, by so small a share.
void expectStays(const Part& part, float leastShare) {
    const BuildPoses first = findBuildPoses(part.kernel(), {});
    if (first.poses.empty()) return;
    const UMatrix4<float> rotation = first.poses.front().rotation;
    const Part applied = part.placed(rotation);
    for (const MeshKernel& mesh : {part.kernel(rotation), applied.kernel()}) {
        const BuildPoses again = findBuildPoses(mesh, {});
        ASSERT_FALSE(again.poses.empty());
        if (again.poses.front().rotation.isIdenticalMatrix()) continue;
        const float before = again.asItLies.cost.total();
        EXPECT_GT(again.poses.front().cost.total(), (1.0f - leastShare) * before);
        EXPECT_LE(again.poses.front().cost.total(), before);
    }
}

class StabilityOfShapes : public testing::TestWithParam<NamedPart> {};

TEST_P(StabilityOfShapes, TheBestPoseStays) {
    // A soup of random triangles has hundreds of directions, of which each frame keeps about
    // twenty: the best of one frame may be missing in the other.
    expectStays(GetParam().part, 0.05f);
    expectStays(GetParam().part.placed(someTurn()), 0.05f);
}

INSTANTIATE_TEST_SUITE_P(Reference, StabilityOfShapes, testing::ValuesIn(referenceShapes()),
                         [](const auto& shape) { return shape.param.name; });

TEST(StabilityOfSampleMeshes, TheBestPoseStays) {
    const std::vector<std::filesystem::path> files = sampleMeshes();
    if (files.empty()) GTEST_SKIP() << whyNoSampleMeshes();
    const std::size_t most = testsAreSmall() ? 10'000 : 1'000'000;
    for (const std::filesystem::path& file : files) {
        const std::optional<Part> part = readSampleMesh(file);
        if (!part || part->triangles.size() > most) continue;
        SCOPED_TRACE(file.filename().string());
        expectStays(*part, 0.01f);
    }
}

}  // namespace

#include <gtest/gtest.h>

#include <limits>

#include "OrientOptimizer.h"
#include "ReferenceShapes.h"
#include "orient/candidates/InitOrients.h"
#include "orient/candidates/RandomSource.h"
#include "plain/PlainCandidates.h"
#include "shapes/SampleMeshes.h"
#include "shapes/Shapes.h"
#include "tools/FloatBits.h"

using namespace Tesk::orient;

namespace {

void expectSameCandidates(MeshKernel& mesh, std::uint32_t seed) {
    PlainRandom random(seed);
    const std::vector<UVector3<float>> plain = plainCandidates(mesh, random);
    OptimizeOrient::seedRandom(seed);
    const std::vector<UVector3<float>> shipped = initOrients(&mesh);
    EXPECT_EQ(nextRandom(), random.next()) << "another count of random numbers was drawn";
    ASSERT_EQ(shipped.size(), plain.size());
    for (std::size_t i = 0; i < plain.size(); ++i) {
        for (int axis = 0; axis < 3; ++axis) {
            ASSERT_TRUE(sameBits(shipped[i][axis], plain[i][axis]))
                << "direction " << i << ", axis " << axis << ": " << hexFloat(shipped[i][axis])
                << " instead of " << hexFloat(plain[i][axis]);
        }
    }
}

class InitOrientsOnShapes : public testing::TestWithParam<NamedPart> {};

TEST_P(InitOrientsOnShapes, AgreesWithThePlainVersionInEveryPlacement) {
    for (const Placement& placement : placements()) {
        SCOPED_TRACE(placement.name);
        MeshKernel mesh = GetParam().part.kernel(placement.matrix);
        for (const std::uint32_t seed : {1u, 2u, 4711u}) expectSameCandidates(mesh, seed);
    }
}

INSTANTIATE_TEST_SUITE_P(Reference, InitOrientsOnShapes, testing::ValuesIn(referenceShapes()),
                         [](const auto& shape) { return shape.param.name; });

TEST(InitOrients, AgreesWithThePlainVersionAtEverySampleCount) {
    for (const int triangles : {999, 1000, 1999, 2000, 4999, 5000, 9999, 10000, 19999, 20000}) {
        MeshKernel mesh = makeSoup(triangles, 10.0f, 3).kernel();
        expectSameCandidates(mesh, 12);
    }
}

TEST(InitOrients, AgreesWithThePlainVersionOnMoreVerticesThanTheRandomNumbersReach) {
    MeshKernel mesh = makeWavySheet(200, 50.0f).kernel();
    ASSERT_GT(mesh.getMesh()->VertexCount(), 32768);
    expectSameCandidates(mesh, 5);
    mesh.setMatrix(placements().back().matrix);
    expectSameCandidates(mesh, 5);
}

TEST(InitOrients, AgreesWithThePlainVersionWhereVerticesAreNotFinite) {
    for (const float bad : {std::numeric_limits<float>::quiet_NaN(),
                            std::numeric_limits<float>::infinity(), 1e38f, 1e-38f}) {
        for (const std::size_t every : {std::size_t{1000}, std::size_t{9}, std::size_t{1}}) {
            Part part = makeSphere(5.0f, 300);
            for (std::size_t i = 0; i < part.positions.size(); i += every) {
                part.positions[i].y = bad;
            }
            MeshKernel mesh = part.kernel();
            expectSameCandidates(mesh, 1);
            mesh.setMatrix(placements().back().matrix);
            expectSameCandidates(mesh, 1);
        }
    }
}

TEST(InitOrients, AgreesWithThePlainVersionOnEverySampleMesh) {
    const auto files = sampleMeshes();
    if (files.empty()) GTEST_SKIP() << whyNoSampleMeshes();
    for (const auto& file : files) {
        SCOPED_TRACE(file.filename().string());
        const std::optional<Part> part = readSampleMesh(file);
        if (!part) GTEST_SKIP() << "built without a reader for " << file;
        MeshKernel mesh = part->kernel();
        expectSameCandidates(mesh, 1);
    }
}

}  // namespace

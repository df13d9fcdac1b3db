#include <gtest/gtest.h>

#include "CompareRecords.h"
#include "ReferenceShapes.h"
#include "orient/RankDirections.h"
#include "plain/PlainRanking.h"
#include "shapes/Shapes.h"
#include "tools/TestSize.h"

namespace {

std::vector<OptimizeOrient::OptOrientation> allRecords(MeshKernel& mesh,
                                                       const OptimizeOrient::Configure& config,
                                                       std::uint32_t seed) {
    CallResult result;
    OptimizeOrient::seedRandom(seed);
    Tesk::orient::rankDirections(&mesh, config, Tesk::orient::Records::kAll, result.axis,
                                 result.angle, &result.orientations, {});
    return result.orientations;
}

void expectSameResult(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                      std::uint32_t seed) {
    const PlainRanking plain = plainCalculate(mesh, config, seed, PlainSearch::kTrianglesOfColumn);
    const CallResult shipped = calculated(mesh, config, seed);
    EXPECT_EQ(shipped.axis, plain.axis);
    EXPECT_TRUE(sameBits(shipped.angle, plain.angle));
    expectSameRecords(shipped.orientations, plain.orientations);
    expectSameRecords(allRecords(mesh, config, seed), plain.all);

    UVector3<float> axis;
    float angle = 0.0f;
    OptimizeOrient::seedRandom(seed);
    OrientOptimizer::calculateOrients(&mesh, config, axis, angle, nullptr, {});
    EXPECT_EQ(axis, plain.axis);
    EXPECT_TRUE(sameBits(angle, plain.angle));
}

class CalculateOrientsOnShapes : public testing::TestWithParam<NamedPart> {};

TEST_P(CalculateOrientsOnShapes, AgreesWithThePlainVersion) {
    MeshKernel mesh = GetParam().part.kernel();
    expectSameResult(mesh, {}, 1);
    expectSameResult(mesh, {.overhangAngle = 40.0f, .supportAreaWeight = 2, .baseHeight = 5.0f},
                     77);
    if (testsAreSmall()) return;
    mesh.setMatrix(placements().back().matrix);
    expectSameResult(mesh,
                     {.supportAreaWeight = 1,
                      .supportVolumeWeight = -4,
                      .heightWeight = 3,
                      .boxVolumeWeight = 0,
                      .baseHeight = -1.0f},
                     3);
    expectSameResult(mesh, {.supportVolumeWeight = 0, .heightWeight = 5, .boxVolumeWeight = -2}, 9);
}

INSTANTIATE_TEST_SUITE_P(Reference, CalculateOrientsOnShapes, testing::ValuesIn(referenceShapes()),
                         [](const auto& shape) { return shape.param.name; });

}  // namespace

#include <gtest/gtest.h>

#include "HostSide.h"
#include "OrientOptimizer.h"
#include "plain/PlainRanking.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;

constexpr int kMost = 12;
constexpr int kMostOfAll = 58;

std::vector<OptOrientation> rankedInCpp(const Part& part, const Configure& config) {
    MeshKernel mesh = part.kernel();
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptOrientation> found;
    OptimizeOrient::seedRandom(7);
    OrientOptimizer::calculateOrients(&mesh, config, axis, angle, &found, {});
    return found;
}

void expectSameRecord(const tesk_orientation& record, const OptOrientation& expected) {
    EXPECT_EQ(record.struct_size, sizeof record);
    for (int i = 0; i < 3; ++i) EXPECT_TRUE(sameBits(record.axis[i], expected.axis[i]));
    EXPECT_TRUE(sameBits(record.angle_rad, expected.angle));
    EXPECT_TRUE(sameBits(record.overhang_area, expected.overhangArea));
    EXPECT_TRUE(sameBits(record.support_volume, expected.supportVolume));
    EXPECT_TRUE(sameBits(record.projected_area, expected.projectedArea));
    EXPECT_TRUE(sameBits(record.height, expected.height));
    EXPECT_TRUE(sameBits(record.box_volume, expected.boxVolume));
    EXPECT_TRUE(sameBits(record.score, expected.score));
}

void expectSameRanking(const Part& part, const tesk_rank_settings* settings,
                       const Configure& config) {
    const std::vector<OptOrientation> expected = rankedInCpp(part, config);
    const MeshHandle mesh = meshOf(part);
    for (const int threads : {0, 1, 3}) {
        const tesk_call call = callOn(threads);
        tesk_orientation records[kMost] = {sized<tesk_orientation>()};
        std::int32_t count = 0;
        ASSERT_EQ(tesk_seed(7), TESK_OK);
        ASSERT_EQ(tesk_rank(mesh.get(), settings, &call, records, kMost, &count), TESK_OK);
        ASSERT_EQ(static_cast<std::size_t>(count), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            expectSameRecord(records[i], expected[i]);
        }
    }
}

TEST(CRanking, ItHasTheBitsOfTheCppInterface) {
    for (const Part& part : {makeColumnWithArm(), makeSoup(300, 20.0f, 5), makeRandomAssembly(4)}) {
        expectSameRanking(part, nullptr, {});
    }
}

std::vector<tesk_orientation> allOf(const tesk_mesh* mesh, int threads) {
    const tesk_call call = callOn(threads);
    std::vector<tesk_orientation> records(kMostOfAll, sized<tesk_orientation>());
    std::int32_t count = -1;
    EXPECT_EQ(tesk_seed(7), TESK_OK);
    EXPECT_EQ(tesk_rank_all(mesh, nullptr, &call, records.data(), kMostOfAll, &count), TESK_OK);
    records.resize(static_cast<std::size_t>(count));
    return records;
}

TEST(CRanking, AllRecordsHaveTheBitsOfThePlainVersion) {
    for (const Part& part : {makeColumnWithArm(), makeSoup(300, 20.0f, 5), makeRandomAssembly(4)}) {
        MeshKernel kernel = part.kernel();
        const std::vector<OptOrientation> expected =
            plainCalculate(kernel, {}, 7, PlainSearch::kTrianglesOfColumn).all;
        EXPECT_GT(expected.size(), std::size_t{kMost});
        const MeshHandle mesh = meshOf(part);
        for (const int threads : {1, 3}) {
            const std::vector<tesk_orientation> records = allOf(mesh.get(), threads);
            ASSERT_EQ(records.size(), expected.size());
            for (std::size_t i = 0; i < expected.size(); ++i) {
                expectSameRecord(records[i], expected[i]);
            }
        }
    }
}

TEST(CRanking, TheTwelveAreSpreadOverAll) {
    const Part part = makeRandomAssembly(4);
    const std::vector<OptOrientation> twelve = rankedInCpp(part, {});
    const std::vector<tesk_orientation> all = allOf(meshOf(part).get(), 2);
    ASSERT_EQ(twelve.size(), std::size_t{kMost});
    const std::size_t step = (all.size() - 2) / 10;
    for (std::size_t i = 0; i < 11; ++i) expectSameRecord(all.at(i * step), twelve[i]);
    expectSameRecord(all.back(), twelve.back());
}

TEST(CRanking, EverySettingArrives) {
    auto settings = sized<tesk_rank_settings>();
    settings.overhang_angle_deg = 30.0f;
    settings.support_area_weight = 2;
    settings.height_weight = 5;
    settings.box_volume_weight = 4;
    settings.base_height = 3.0f;
    Configure config;
    config.overhangAngle = 30.0f;
    config.supportAreaWeight = 2;
    config.supportVolumeWeight = 0;
    config.heightWeight = 5;
    config.boxVolumeWeight = 4;
    config.baseHeight = 3.0f;
    const Part part = makeRandomAssembly(9);
    expectSameRanking(part, &settings, config);

    settings.support_area_weight = config.supportAreaWeight = 0;
    expectSameRanking(part, &settings, config);
    settings.compute_support = config.computeSupport = 1;
    expectSameRanking(part, &settings, config);
    settings.support_volume_weight = config.supportVolumeWeight = 6;
    expectSameRanking(part, &settings, config);
}

TEST(CRanking, TheDefaultSettingsAreThoseOfTheCppInterface) {
    tesk_rank_settings settings;
    std::memset(&settings, 0x5a, sizeof settings);
    settings.struct_size = sizeof settings;
    ASSERT_EQ(tesk_rank_settings_init(&settings), TESK_OK);
    const Configure expected;
    EXPECT_EQ(settings.struct_size, sizeof settings);
    EXPECT_EQ(settings.overhang_angle_deg, expected.overhangAngle);
    EXPECT_EQ(settings.support_area_weight, expected.supportAreaWeight);
    EXPECT_EQ(settings.support_volume_weight, expected.supportVolumeWeight);
    EXPECT_EQ(settings.height_weight, expected.heightWeight);
    EXPECT_EQ(settings.box_volume_weight, expected.boxVolumeWeight);
    EXPECT_EQ(settings.compute_support, expected.computeSupport);
    EXPECT_EQ(settings.base_height, expected.baseHeight);
}

TEST(CRanking, NoMoreThanTheCapacityIsWritten) {
    const MeshHandle mesh = meshOf(makeColumnWithArm());
    tesk_orientation records[3] = {sized<tesk_orientation>(), {}, {}};
    records[2].height = 77.0f;
    std::int32_t count = 0;
    ASSERT_EQ(tesk_rank(mesh.get(), nullptr, nullptr, records, 2, &count), TESK_OK);
    EXPECT_EQ(count, kMost);
    EXPECT_GT(records[1].height, 0.0f);
    EXPECT_EQ(records[2].height, 77.0f);
    EXPECT_EQ(tesk_rank(mesh.get(), nullptr, nullptr, nullptr, 0, nullptr), TESK_OK);

    records[1].height = 77.0f;
    ASSERT_EQ(tesk_rank_all(mesh.get(), nullptr, nullptr, records, 1, &count), TESK_OK);
    EXPECT_GT(count, kMost);
    EXPECT_EQ(records[1].height, 77.0f);
    EXPECT_EQ(tesk_rank_all(mesh.get(), nullptr, nullptr, nullptr, 0, nullptr), TESK_OK);
}

TEST(CRanking, LayingFlatHasTheBitsOfTheCppInterface) {
    for (const auto& [name, placement] : placements()) {
        const Part part = makeRandomAssembly(2);
        MeshKernel kernel = part.kernel(placement);
        UMatrix4<float> expected;
        OrientOptimizer::calculateOrients_minBoundingBox(&kernel, expected, {});
        float matrix[16];
        ASSERT_EQ(tesk_lay_flat(meshOf(part, placement).get(), nullptr, matrix), TESK_OK);
        EXPECT_TRUE(sameMatrix(matrix, expected)) << name;
    }
}

}  // namespace

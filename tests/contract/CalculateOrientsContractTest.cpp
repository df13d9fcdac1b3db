#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <thread>

#include "HostMesh.h"
#include "TeskDebug/StopWatchLog.h"

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;

/// Where a turn by `angle` about `axis` takes the direction d: v' = v cos + (a × v) sin + a (a·v)
/// (1 − cos), written out so that it rests on nothing of the library.
UVector3<float> turned(const UVector3<float>& axis, float angle, const UVector3<float>& d) {
    const float length = std::sqrt(axis.x * axis.x + axis.y * axis.y + axis.z * axis.z);
    if (length == 0.0f) return d;
    const UVector3<float> a(axis.x / length, axis.y / length, axis.z / length);
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    const float along = (a.x * d.x + a.y * d.y + a.z * d.z) * (1.0f - c);
    return {d.x * c + (a.y * d.z - a.z * d.y) * s + a.x * along,
            d.y * c + (a.z * d.x - a.x * d.z) * s + a.y * along,
            d.z * c + (a.x * d.y - a.y * d.x) * s + a.z * along};
}

/// The z extent that a record's turn gives to a box with edges along the axes.
float turnedHeight(const OptOrientation& record, float x, float y, float z) {
    return std::abs(turned(record.axis, record.angle, {x, 0.0f, 0.0f}).z) +
           std::abs(turned(record.axis, record.angle, {0.0f, y, 0.0f}).z) +
           std::abs(turned(record.axis, record.angle, {0.0f, 0.0f, z}).z);
}

TEST(CalculateOrientsContract, AStandingBoxIsLaidFlat) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    const HostResult result = rankSeeded(box, Configure(), 1);
    ASSERT_EQ(result.orientations.size(), 12u);
    EXPECT_NEAR(result.orientations.front().height, 20.0f, 1e-4f);
    EXPECT_NEAR(result.orientations.front().boxVolume, 48000.0f, 0.5f);
    EXPECT_NEAR(result.orientations.front().supportVolume, 0.0f, 1.0f);
    const UVector3<float> up = turned(result.axis, result.angle, {1.0f, 0.0f, 0.0f});
    EXPECT_NEAR(std::abs(up.z), 1.0f, 1e-6f);
}

TEST(CalculateOrientsContract, EveryRecordsTurnGivesTheHeightThatItStates) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    for (const OptOrientation& record : rankSeeded(box, Configure(), 7).orientations) {
        EXPECT_NEAR(turnedHeight(record, 20.0f, 30.0f, 80.0f), record.height, 1e-3f);
    }
}

TEST(CalculateOrientsContract, TheRecordsAscendAndTheFirstIsTheBest) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    const HostResult result = rankSeeded(box, Configure(), 1);
    EXPECT_TRUE(std::is_sorted(
        result.orientations.begin(), result.orientations.end(),
        [](const OptOrientation& a, const OptOrientation& b) { return a.score < b.score; }));
    EXPECT_EQ(result.angle, result.orientations.front().angle);
    EXPECT_EQ(result.axis.x, result.orientations.front().axis.x);
    EXPECT_EQ(result.axis.y, result.orientations.front().axis.y);
    EXPECT_EQ(result.axis.z, result.orientations.front().axis.z);
}

TEST(CalculateOrientsContract, ACallWithoutListGivesTheSameBest) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    const HostResult listed = rankSeeded(box, Configure(), 3);
    UVector3<float> axis;
    float angle = -1.0f;
    OptimizeOrient::seedRandom(3);
    OrientOptimizer::calculateOrients(&box, Configure(), axis, angle, nullptr, {});
    EXPECT_EQ(angle, listed.angle);
    EXPECT_EQ(axis.x, listed.axis.x);
    EXPECT_EQ(axis.y, listed.axis.y);
    EXPECT_EQ(axis.z, listed.axis.z);
}

TEST(CalculateOrientsContract, WhatTheListHeldBeforeIsReplaced) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    const HostResult fresh = rankSeeded(box, Configure(), 3);
    HostResult reused;
    reused.orientations.assign(1000, {{1.0f, 2.0f, 3.0f}, 4.0f, 5, 6, 7, 8, 9, 10});
    OptimizeOrient::seedRandom(3);
    OrientOptimizer::calculateOrients(&box, Configure(), reused.axis, reused.angle,
                                      &reused.orientations, {});
    EXPECT_TRUE(sameBits(reused.orientations, fresh.orientations));
}

TEST(CalculateOrientsContract, TheCallbackChangesNothing) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    const HostResult silent = rankSeeded(box, Configure(), 5);
    HostResult reported;
    int reports = 0;
    OptimizeOrient::seedRandom(5);
    OrientOptimizer::calculateOrients(&box, Configure(), reported.axis, reported.angle,
                                      &reported.orientations, [&](int) { ++reports; });
    EXPECT_GT(reports, 5);
    EXPECT_TRUE(sameBits(reported.orientations, silent.orientations));
}

TEST(CalculateOrientsContract, ProgressRunsFrom3To100OnTheCallingThread) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<int> reports;
    const std::thread::id caller = std::this_thread::get_id();
    OrientOptimizer::calculateOrients(&box, Configure(), axis, angle, nullptr, [&](int percent) {
        EXPECT_EQ(std::this_thread::get_id(), caller);
        reports.push_back(percent);
    });
    ASSERT_GE(reports.size(), 6u);
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
    EXPECT_EQ(std::vector<int>(reports.begin(), reports.begin() + 3), (std::vector{3, 10, 10}));
    EXPECT_EQ(std::vector<int>(reports.end() - 3, reports.end()), (std::vector{90, 95, 100}));
}

TEST(CalculateOrientsContract, TheSameSeedRepeatsTheResult) {
    MeshKernel box = hostBox(13.0f, 29.0f, 71.0f);
    const HostResult first = rankSeeded(box, Configure(), 42);
    const HostResult second = rankSeeded(box, Configure(), 42);
    EXPECT_TRUE(sameBits(first.orientations, second.orientations));
    EXPECT_EQ(first.angle, second.angle);
}

TEST(CalculateOrientsContract, AnotherSeedLeadsToOtherCandidates) {
    MeshKernel box = hostBox(13.0f, 29.0f, 71.0f);
    const HostResult first = rankSeeded(box, Configure(), 1);
    bool differs = false;
    for (std::uint32_t seed = 2; seed < 12 && !differs; ++seed) {
        differs = !sameBits(rankSeeded(box, Configure(), seed).orientations, first.orientations);
    }
    EXPECT_TRUE(differs);
}

TEST(CalculateOrientsContract, TheSeedBelongsToTheThread) {
    MeshKernel box = hostBox(13.0f, 29.0f, 71.0f);
    const HostResult expected = rankSeeded(box, Configure(), 42);
    OptimizeOrient::seedRandom(42);
    std::thread([] { OptimizeOrient::seedRandom(7); }).join();
    HostResult result;
    OrientOptimizer::calculateOrients(&box, Configure(), result.axis, result.angle,
                                      &result.orientations, {});
    EXPECT_TRUE(sameBits(result.orientations, expected.orientations));
}

TEST(CalculateOrientsContract, TwoMeshesCanBeRankedAtOnce) {
    MeshKernel small = hostBox(13.0f, 29.0f, 71.0f);
    MeshKernel large = hostBox(200.0f, 30.0f, 80.0f);
    const HostResult expectedSmall = rankSeeded(small, Configure(), 1);
    const HostResult expectedLarge = rankSeeded(large, Configure(), 2);
    HostResult besides;
    std::thread other([&] { besides = rankSeeded(small, Configure(), 1); });
    const HostResult here = rankSeeded(large, Configure(), 2);
    other.join();
    EXPECT_TRUE(sameBits(besides.orientations, expectedSmall.orientations));
    EXPECT_TRUE(sameBits(here.orientations, expectedLarge.orientations));
}

TEST(CalculateOrientsContract, WithoutSupportWeightsOnlyTheSwitchMeasuresSupport) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    Configure config;
    config.supportVolumeWeight = 0;
    config.baseHeight = 5.0f;
    for (const OptOrientation& record : rankSeeded(box, config, 1).orientations) {
        EXPECT_EQ(record.supportVolume, 0.0f);
        EXPECT_EQ(record.projectedArea, 0.0f);
        EXPECT_EQ(record.overhangArea, 0.0f);
    }
    config.computeSupport = 1;
    const OptOrientation best = rankSeeded(box, config, 1).orientations.front();
    // Five high under a footprint of 30 × 80; the columns meet it in whole cells.
    EXPECT_NEAR(best.projectedArea, 2400.0f, 240.0f);
    EXPECT_NEAR(best.supportVolume, 5.0f * best.projectedArea, 1.0f);
    EXPECT_GT(best.overhangArea, 0.0f);
}

TEST(CalculateOrientsContract, TheMeshKeepsItsGeometryAndPlacement) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    UMatrix4<float> placement;
    placement.at(3, 0) = 100.0f;
    placement.at(0, 0) = 2.0f;
    box.setMatrix(placement);
    rankSeeded(box, Configure(), 1);
    const MeshKernel untouched = hostBox(20.0f, 30.0f, 80.0f);
    for (std::int32_t i = 0; i < 8; ++i) {
        const UPoint3<float>& p = box.getMesh()->Vertex(i)->P();
        const UPoint3<float>& q = untouched.getMesh()->Vertex(i)->P();
        EXPECT_EQ(std::memcmp(&p, &q, sizeof p), 0);
    }
    EXPECT_EQ(box.getMatrix().at(3, 0), 100.0f);
    EXPECT_EQ(box.getMatrix().at(0, 0), 2.0f);
    EXPECT_NEAR(box.GetBox().MaxX(), 140.0f, 1e-4f);
}

TEST(CalculateOrientsContract, ThePlacementCounts) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    UMatrix4<float> placement;
    placement.at(0, 0) = 10.0f;
    box.setMatrix(placement);
    EXPECT_NEAR(rankSeeded(box, Configure(), 1).orientations.front().height, 30.0f, 1e-3f);
}

TEST(CalculateOrientsContract, AMeshWithoutTrianglesIsNoError) {
    MeshKernel empty;
    HostResult result = rankSeeded(empty, Configure(), 1);
    EXPECT_EQ(result.orientations.size(), 12u);
}

TEST(CalculateOrientsContract, NonFiniteVerticesAreNoError) {
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    box.getMesh()->Vertex(0)->SetP({std::numeric_limits<float>::quiet_NaN(), 0.0f, 0.0f});
    box.getMesh()->Vertex(5)->SetP({0.0f, std::numeric_limits<float>::infinity(), 0.0f});
    EXPECT_EQ(rankSeeded(box, Configure(), 1).orientations.size(), 12u);
}

TEST(CalculateOrientsContract, TheStagesAreLoggedInOrder) {
    std::vector<std::string> labels;
    const StopWatchLog::Sink before = StopWatchLog::setSink([&](const char* label, double seconds) {
        EXPECT_GE(seconds, 0.0);
        labels.emplace_back(label);
    });
    MeshKernel box = hostBox(20.0f, 30.0f, 80.0f);
    rankSeeded(box, Configure(), 1);
    StopWatchLog::setSink(before);
    EXPECT_EQ(labels, (std::vector<std::string>{"Orient-UpdateTopo", "Orient-InitOri", "Orient-0",
                                                "Orient-2", "Orient-3", "Orient-4"}));
}

}  // namespace

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "CompareRecords.h"
#include "OmpThreads.h"
#include "TeskDebug/StopWatchLog.h"
#include "plain/PlainRanking.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

using OptimizeOrient::Configure;

/// The progress reports of one call, and whether all came from the calling thread.
std::vector<int> reportsOf(MeshKernel& mesh, int threads) {
    const OmpThreads setting(threads);
    std::vector<int> reports;
    bool isCallingThread = true;
    const std::thread::id caller = std::this_thread::get_id();
    calculated(mesh, {}, 1, [&](int percent) {
        isCallingThread = isCallingThread && std::this_thread::get_id() == caller;
        reports.push_back(percent);
    });
    EXPECT_TRUE(isCallingThread);
    return reports;
}

/// The reports that a call makes with so many candidates: the calling thread evaluates the first
/// of equal shares, and counts each of its candidates as many times as there are threads.
std::vector<int> expectedReports(int candidates, int threads) {
    std::vector<int> reports = {3, 10};
    const int share = candidates / threads + (candidates % threads != 0 ? 1 : 0);
    for (int k = 0; k < share; ++k) {
        const float done =
            static_cast<float>(k) * static_cast<float>(threads) / static_cast<float>(candidates);
        const double fraction = std::min(done, 1.0f);
        reports.push_back(static_cast<int>(fraction * 80.0 + 10.0));
    }
    reports.insert(reports.end(), {90, 95, 100});
    return reports;
}

int candidateCountOf(MeshKernel& mesh) {
    PlainRandom random(1);
    return static_cast<int>(plainCandidates(mesh, random).size());
}

std::vector<std::string> labelsOf(MeshKernel& mesh,
                                  std::vector<OptimizeOrient::OptOrientation>* list,
                                  const std::function<void(int)>& progress = {}) {
    std::vector<std::string> labels;
    StopWatchLog::Sink before = StopWatchLog::setSink([&](const char* label, double seconds) {
        labels.emplace_back(label);
        EXPECT_GE(seconds, 0.0);
    });
    UVector3<float> axis;
    float angle = 0.0f;
    OptimizeOrient::seedRandom(1);
    OrientOptimizer::calculateOrients(&mesh, {}, axis, angle, list, progress);
    StopWatchLog::setSink(std::move(before));
    return labels;
}

TEST(CalculateOrients, ReportsOnAMeshWithoutTrianglesAreKnown) {
    MeshKernel nothing;
    EXPECT_EQ(reportsOf(nothing, 1), (std::vector{3,  10, 10, 14, 18, 23, 27, 32, 36, 41, 45, 50,
                                                  54, 58, 63, 67, 72, 76, 81, 85, 90, 95, 100}));
}

TEST(CalculateOrients, ReportsFollowTheCandidatesOfTheCallingThread) {
    for (const Part& part : {makeBox({0, 0, 0}, {1, 1, 1}), makeSphere(5.0f, 400), Part()}) {
        MeshKernel mesh = part.kernel();
        const int candidates = candidateCountOf(mesh);
        for (const int threads : {1, 2, 3, 16}) {
            EXPECT_EQ(reportsOf(mesh, threads), expectedReports(candidates, threads))
                << threads << " threads";
        }
    }
}

TEST(CalculateOrients, ReportsNeverFallAndTheLoopStaysBelowNinetyOnOneThread) {
    MeshKernel mesh = makeSphere(5.0f, 900).kernel();
    for (const int threads : {1, 2, 3, 16}) {
        const std::vector<int> reports = reportsOf(mesh, threads);
        EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end()));
        EXPECT_EQ(reports[2], 10);
        EXPECT_LE(reports[reports.size() - 4], threads == 1 ? 89 : 90);
        EXPECT_EQ(reports.back(), 100);
    }
}

TEST(CalculateOrients, WithoutACallbackTheResultIsTheSame) {
    MeshKernel mesh = makeTable().kernel();
    const CallResult silent = calculated(mesh, {});
    const CallResult loud = calculated(mesh, {}, 1, [](int) {});
    EXPECT_EQ(silent.hash(), loud.hash());
}

TEST(CalculateOrients, LogsItsSixStagesInOrder) {
    const std::vector<std::string> stages = {"Orient-UpdateTopo", "Orient-InitOri", "Orient-0",
                                             "Orient-2",          "Orient-3",       "Orient-4"};
    MeshKernel mesh = makeTable().kernel();
    std::vector<OptimizeOrient::OptOrientation> list;
    EXPECT_EQ(labelsOf(mesh, &list), stages);
    EXPECT_EQ(labelsOf(mesh, nullptr), stages);
    EXPECT_EQ(labelsOf(mesh, nullptr, [](int) {}), stages);
}

TEST(CalculateOrients, StagesEndBeforeTheReportsThatFollowThem) {
    std::vector<std::string> events;
    StopWatchLog::Sink before =
        StopWatchLog::setSink([&](const char* label, double) { events.emplace_back(label); });
    MeshKernel nothing;
    calculated(nothing, {}, 1, [&](int percent) { events.push_back(std::to_string(percent)); });
    StopWatchLog::setSink(std::move(before));
    std::vector<std::string> outside;
    for (const std::string& event : events) {
        const bool isFixed = event.front() == 'O' || event == "3" || event == "90" ||
                             event == "95" || event == "100";
        if (isFixed) outside.push_back(event);
    }
    EXPECT_EQ(outside,
              (std::vector<std::string>{"Orient-UpdateTopo", "Orient-InitOri", "3", "Orient-0",
                                        "90", "Orient-2", "95", "Orient-3", "100", "Orient-4"}));
}

TEST(CalculateOrients, AlwaysReturnsTwelveRecordsInAscendingOrder) {
    for (const Part& part : {makeTable(), Part(), makeSoup(50, 9.0f, 4), makeSphere(3.0f, 300)}) {
        MeshKernel mesh = part.kernel();
        const CallResult result = calculated(mesh, {});
        ASSERT_EQ(result.orientations.size(), 12u);
        for (std::size_t i = 1; i < 12; ++i) {
            EXPECT_LE(result.orientations[i - 1].score, result.orientations[i].score);
        }
        EXPECT_EQ(result.axis, result.orientations[0].axis);
        EXPECT_EQ(result.angle, result.orientations[0].angle);
    }
}

TEST(CalculateOrients, TheListMayHoldAnythingBefore) {
    MeshKernel mesh = makeTable().kernel();
    const CallResult fresh = calculated(mesh, {});
    for (const std::size_t before : {1u, 12u, 200u}) {
        CallResult used;
        used.orientations.resize(before);
        for (auto& record : used.orientations) record.score = -5.0f;
        OptimizeOrient::seedRandom(1);
        OrientOptimizer::calculateOrients(&mesh, {}, used.axis, used.angle, &used.orientations, {});
        EXPECT_EQ(used.hash(), fresh.hash());
    }
}

TEST(CalculateOrients, AnyOneOfThreeSettingsSwitchesSupportOn) {
    MeshKernel mesh = makeTable().kernel();
    const auto hasSupport = [&](std::int32_t area, std::int32_t volume, std::int32_t compute) {
        const CallResult result = calculated(
            mesh,
            {.supportAreaWeight = area, .supportVolumeWeight = volume, .computeSupport = compute});
        const auto& list = result.orientations;
        const bool footprint = std::any_of(list.begin(), list.end(),
                                           [](const auto& r) { return r.projectedArea != 0.0f; });
        const bool volumes = std::any_of(list.begin(), list.end(),
                                         [](const auto& r) { return r.supportVolume != 0.0f; });
        EXPECT_EQ(footprint, volumes);
        return footprint;
    };
    EXPECT_TRUE(hasSupport(1, 0, 0));
    EXPECT_TRUE(hasSupport(0, 1, 0));
    EXPECT_TRUE(hasSupport(0, 0, 1));
    EXPECT_TRUE(hasSupport(-1, 0, 0));
    EXPECT_TRUE(hasSupport(0, 0, -7));
}

TEST(CalculateOrients, WithoutSupportWeightsAndSwitchTheSupportScoresStayZero) {
    MeshKernel mesh = makeTable().kernel();
    const CallResult result =
        calculated(mesh, {.supportAreaWeight = 0, .supportVolumeWeight = 0, .computeSupport = 0});
    for (const auto& record : result.orientations) {
        EXPECT_EQ(record.supportVolume, 0.0f);
        EXPECT_EQ(record.overhangArea, 0.0f);
        EXPECT_EQ(record.projectedArea, 0.0f);
        EXPECT_GT(record.height, 0.0f);
    }
}

TEST(CalculateOrients, WithAllWeightsZeroTheBestIsDown) {
    MeshKernel mesh = makeTable().kernel();
    const CallResult result =
        calculated(mesh, {.supportVolumeWeight = 0, .heightWeight = 0, .boxVolumeWeight = 0});
    EXPECT_EQ(result.axis, UVector3<float>(0, 1, 0));
    EXPECT_EQ(result.angle, 3.1415927f);
    for (const auto& record : result.orientations) EXPECT_EQ(record.score, 0.0f);
}

TEST(CalculateOrients, ATableIsTurnedOver) {
    MeshKernel mesh = makeTable().kernel();
    const CallResult result = calculated(mesh, {});
    EXPECT_EQ(result.axis, UVector3<float>(0, 1, 0));
    EXPECT_EQ(result.angle, 3.1415927f);
    EXPECT_NEAR(result.orientations[0].supportVolume, 0.0f, 1e-3f);
}

TEST(CalculateOrients, AreasAreThoseOfThePlacedTriangles) {
    UMatrix4<float> twice;
    for (int i = 0; i < 3; ++i) twice.at(i, i) = 2.0f;
    MeshKernel placed = makeColumnWithArm().kernel(twice);
    MeshKernel big = makeColumnWithArm().scaled(2, 2, 2).kernel();
    const auto best = [](MeshKernel& mesh) {
        return calculated(mesh, {.supportVolumeWeight = 0,
                                 .heightWeight = 0,
                                 .boxVolumeWeight = 0,
                                 .computeSupport = 1})
            .orientations[0];
    };
    // All weights zero: record 0 is the same direction in both.
    EXPECT_GT(best(placed).overhangArea, 0.0f);
    EXPECT_EQ(best(placed).overhangArea, best(big).overhangArea);
}

TEST(CalculateOrients, TopologyAndNormalsAreFreshAfterwards) {
    MeshKernel mesh = makeTable().withoutEvery(6).kernel();
    calculated(mesh, {});
    EXPECT_GT(mesh.topology().openEdges, 0);
    EXPECT_NEAR(mesh.getMesh()->Triangle(1)->N().GetLength(), 1.0f, 1e-6f);
}

TEST(CalculateOrients, TheMeshKeepsItsPlacementAndItsVertices) {
    const Part part = makeTable();
    MeshKernel mesh = part.kernel(placements().back().matrix);
    calculated(mesh, {});
    EXPECT_EQ(mesh.getMatrix(), placements().back().matrix);
    for (std::int32_t i = 0; i < mesh.getMesh()->VertexCount(); ++i) {
        EXPECT_EQ(mesh.getMesh()->Vertex(i)->P(), part.positions[static_cast<std::size_t>(i)]);
    }
}

TEST(CalculateOrients, TheReservedFieldIsNotRead) {
    MeshKernel mesh = makeTable().kernel();
    EXPECT_EQ(calculated(mesh, {.reserved = 0}).hash(), calculated(mesh, {.reserved = -1}).hash());
}

TEST(CalculateOrients, TheClassHoldsNoDataAndCanBeAssigned) {
    OrientOptimizer a;
    OrientOptimizer b;
    EXPECT_EQ(&(a = b), &a);
    EXPECT_EQ(&(a = OrientOptimizer()), &a);
}

}  // namespace

#include <gtest/gtest.h>

#include <thread>

#include "CompareRecords.h"
#include "OmpThreads.h"
#include "ReferenceShapes.h"
#include "TeskDebug/StopWatchLog.h"
#include "orient/candidates/InitOrients.h"
#include "orient/candidates/RandomSource.h"
#include "orient/turn/Flatten.h"
#include "shapes/CadShapes.h"
#include "shapes/SampleMeshes.h"
#include "shapes/Shapes.h"
#include "tools/FloatBits.h"
#include "tools/TestRandom.h"
#include "tools/TestSize.h"

using namespace Tesk::orient;

namespace {

constexpr OptimizeOrient::Configure kEverything = {.supportAreaWeight = 1};

std::uint64_t hashOf(MeshKernel& mesh, std::uint32_t seed = 1) {
    return calculated(mesh, kEverything, seed).hash();
}

void expectSameForAllThreadCounts(const Part& part) {
    MeshKernel mesh = part.kernel();
    std::uint64_t expected = 0;
    for (const int threads : {1, 2, 3, 7, 16}) {
        const OmpThreads setting(threads);
        const std::uint64_t hash = hashOf(mesh);
        if (threads == 1) expected = hash;
        ASSERT_EQ(hash, expected) << threads << " threads";
    }
}

TEST(Determinism, ResultsAreTheSameForOneTwoThreeSevenAndSixteenThreads) {
    const std::size_t stride = testsAreSmall() ? 5 : 1;
    for (std::size_t i = 0; i < referenceShapes().size(); i += stride) {
        SCOPED_TRACE(referenceShapes()[i].name);
        expectSameForAllThreadCounts(referenceShapes()[i].part);
    }
}

TEST(Determinism, ABigMeshGivesTheSameForAnyNumberOfThreads) {
    expectSameForAllThreadCounts(makeSphere(40.0f, testsAreSmall() ? 5000 : 100000));
}

/// What comes before the evaluation of a mesh big enough for threads.
std::uint64_t preparedHash(MeshKernel& mesh, int threads) {
    const OmpThreads setting(threads);
    BitHash hash;
    const auto add = [&](std::int32_t value) { hash.add(static_cast<std::uint32_t>(value)); };
    mesh.UpdateTopo(true, MeshKernel::kTriangleNeighbours + MeshKernel::kEdgeCounts);
    for (std::int32_t i = 0; i < mesh.getMesh()->TriangleCount(); ++i) {
        for (int k = 0; k < 3; ++k) {
            add(mesh.getMesh()->Triangle(i)->Neighbour(k));
        }
    }
    const TopologyCounts& counts = mesh.topology();
    add(counts.openEdges + 3 * counts.nonManifoldEdges + 7 * counts.inconsistentEdges);
    OptimizeOrient::seedRandom(5);
    for (const UVector3<float>& d : initOrients(&mesh)) {
        for (const float value : {d.x, d.y, d.z}) hash.add(value);
    }
    add(nextRandom());
    Tesk::withTeam(threads, [&](Tesk::Team& team) {
        const FlatMesh flat = flatten(team, *mesh.getMesh(), mesh.getMatrix());
        for (const auto* list : {&flat.x, &flat.y, &flat.z}) {
            for (const float value : *list) hash.add(value);
        }
        for (const auto& corners : flat.corners) {
            for (const std::int32_t corner : corners) add(corner);
        }
        add(static_cast<std::int32_t>(flat.keptVertices));
        for (const float value : {flat.reach, flat.placedBox.MinX(), flat.placedBox.MaxZ()}) {
            hash.add(value);
        }
    });
    return hash.value();
}

void expectSamePreparation(MeshKernel mesh) {
    const std::uint64_t expected = preparedHash(mesh, 1);
    for (const int threads : {2, 3, 7, 16}) {
        ASSERT_EQ(preparedHash(mesh, threads), expected) << threads << " threads";
    }
}

TEST(Determinism, WhatComesBeforeTheEvaluationIsTheSameForAnyNumberOfThreads) {
    const int size = testsAreSmall() ? 110'000 : 400'000;
    expectSamePreparation(makeSphere(40.0f, size).kernel());
    expectSamePreparation(makeSphere(40.0f, size).kernel(placements().back().matrix));
}

TEST(Determinism, ShuffledDeletedAndCollapsedPartsOfABigMeshMakeNoDifference) {
    Part part = makeSphere(40.0f, testsAreSmall() ? 110'000 : 400'000);
    TestRandom random(3);
    for (std::size_t i = 1; i < part.triangles.size(); ++i) {
        std::swap(part.triangles[i],
                  part.triangles[static_cast<std::size_t>(random.below(static_cast<int>(i)))]);
    }
    for (std::size_t i = 0; i < part.triangles.size(); i += 1000) {
        part.triangles[i][1] = part.triangles[i][0];
    }
    MeshKernel mesh = part.kernel();
    for (std::int32_t i = 0; i < mesh.getMesh()->VertexCount(); i += 37) {
        mesh.getMesh()->Vertex(i)->SetD(true);
    }
    expectSamePreparation(mesh);
}

TEST(Determinism, ASampleMeshGivesTheSameForAnyNumberOfThreads) {
    if (testsAreSmall()) GTEST_SKIP() << "left to the quick builds";
    const auto files = sampleMeshes();
    if (files.empty()) GTEST_SKIP() << whyNoSampleMeshes();
    const std::optional<Part> part = readSampleMesh(files.front());
    if (!part) GTEST_SKIP() << "built without a reader for " << files.front();
    expectSameForAllThreadCounts(*part);
}

TEST(Determinism, TwentyCallsFromOneSeedGiveTheSame) {
    MeshKernel mesh = makeRandomAssembly(3).kernel();
    const OmpThreads setting(3);
    const std::uint64_t expected = hashOf(mesh, 99);
    for (int i = 0; i < 20; ++i) ASSERT_EQ(hashOf(mesh, 99), expected) << "call " << i;
}

TEST(Determinism, TwentyFreshMeshesFromOneSeedGiveTheSame) {
    const Part part = makeSphere(7.0f, 1500);
    std::uint64_t expected = 0;
    for (int i = 0; i < 20; ++i) {
        MeshKernel mesh = part.kernel();
        const std::uint64_t hash = hashOf(mesh, 5);
        if (i == 0) expected = hash;
        ASSERT_EQ(hash, expected) << "call " << i;
    }
}

TEST(Determinism, TheNextCallsCandidatesDoNotDependOnTheThreadsOfThisOne) {
    // No reseeding in between: what the first call drew must not depend on its threads.
    MeshKernel mesh = makeSoup(80, 9.0f, 2).kernel();
    const auto secondHash = [&](int threads) {
        const OmpThreads setting(threads);
        hashOf(mesh, 7);
        CallResult second;
        OrientOptimizer::calculateOrients(&mesh, kEverything, second.axis, second.angle,
                                          &second.orientations, {});
        return second.hash();
    };
    EXPECT_EQ(secondHash(1), secondHash(2));
    EXPECT_EQ(secondHash(1), secondHash(16));
}

TEST(Determinism, AnotherSeedMayGiveAnotherResult) {
    MeshKernel mesh = makeSoup(80, 9.0f, 2).kernel();
    EXPECT_NE(hashOf(mesh, 1), hashOf(mesh, 2));
}

TEST(Determinism, LogLabelsAreTheSameForAnyNumberOfThreads) {
    MeshKernel mesh = makeTable().kernel();
    const auto labels = [&](int threads) {
        const OmpThreads setting(threads);
        std::vector<std::string> seen;
        StopWatchLog::Sink before =
            StopWatchLog::setSink([&](const char* label, double) { seen.emplace_back(label); });
        hashOf(mesh);
        StopWatchLog::setSink(std::move(before));
        return seen;
    };
    const std::vector<std::string> expected = labels(1);
    EXPECT_EQ(expected.size(), 6u);
    for (const int threads : {2, 3, 16}) EXPECT_EQ(labels(threads), expected);
}

TEST(Determinism, CallsAtOnceOnDifferentMeshesGiveWhatTheyGiveAlone) {
    const Part parts[] = {makeTable(), makeSphere(6.0f, 800), makeRandomAssembly(4)};
    std::vector<std::uint64_t> alone;
    for (const Part& part : parts) {
        MeshKernel mesh = part.kernel();
        alone.push_back(hashOf(mesh));
    }
    std::vector<std::uint64_t> together(alone.size());
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < alone.size(); ++i) {
        threads.emplace_back([&, i] {
            MeshKernel mesh = parts[i].kernel();
            for (int round = 0; round < 3; ++round) together[i] = hashOf(mesh);
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(together, alone);
}

}  // namespace

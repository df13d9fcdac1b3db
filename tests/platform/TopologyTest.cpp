#include <gtest/gtest.h>
#include <omp.h>

#include <algorithm>
#include <array>
#include <map>
#include <utility>
#include <vector>

#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/TestRandom.h"

namespace {

using Triangle = UTriangle<float>;

constexpr int kAll = MeshKernel::kTriangleNeighbours + MeshKernel::kEdgeCounts;

/// A mesh whose positions do not matter.
MeshKernel meshOf(int vertices, const std::vector<UMesh<float>::Corners>& triangles) {
    const std::vector<UPoint3<float>> positions(static_cast<std::size_t>(vertices));
    MeshKernel kernel(positions, triangles);
    kernel.UpdateTopo(true, kAll);
    return kernel;
}

void expectCounts(const MeshKernel& kernel, int open, int nonManifold, int inconsistent) {
    EXPECT_EQ(kernel.topology().openEdges, open);
    EXPECT_EQ(kernel.topology().nonManifoldEdges, nonManifold);
    EXPECT_EQ(kernel.topology().inconsistentEdges, inconsistent);
}

/// The edges of a mesh by an ordered map: vertex pair to the triangle sides that use it.
struct EdgeUse {
    std::int32_t triangle;
    int edge;
    bool isUpward;
};

std::map<std::pair<std::int32_t, std::int32_t>, std::vector<EdgeUse>> edgesOf(
    const UMesh<float>& mesh) {
    std::map<std::pair<std::int32_t, std::int32_t>, std::vector<EdgeUse>> edges;
    for (std::int32_t t = 0; t < mesh.TriangleCount(); ++t) {
        const std::array v = {mesh.Triangle(t)->V(0)->Index(), mesh.Triangle(t)->V(1)->Index(),
                              mesh.Triangle(t)->V(2)->Index()};
        if (v[0] == v[1] || v[1] == v[2] || v[2] == v[0]) continue;
        for (std::size_t k = 0; k < 3; ++k) {
            const std::int32_t from = v[k];
            const std::int32_t to = v[(k + 1) % 3];
            edges[std::minmax(from, to)].push_back({t, static_cast<int>(k), from < to});
        }
    }
    return edges;
}

void expectSameAsPlain(MeshKernel& kernel) {
    UMesh<float>& mesh = *kernel.getMesh();
    TopologyCounts counts;
    std::vector<std::array<std::int32_t, 3>> neighbours(
        static_cast<std::size_t>(mesh.TriangleCount()),
        {Triangle::kOpenEdge, Triangle::kOpenEdge, Triangle::kOpenEdge});
    for (const auto& [vertices, uses] : edgesOf(mesh)) {
        if (uses.size() == 1) ++counts.openEdges;
        if (uses.size() > 2) ++counts.nonManifoldEdges;
        if (uses.size() == 2 && uses[0].isUpward == uses[1].isUpward) ++counts.inconsistentEdges;
        for (std::size_t i = 0; i < uses.size() && uses.size() > 1; ++i) {
            neighbours[static_cast<std::size_t>(uses[i].triangle)]
                      [static_cast<std::size_t>(uses[i].edge)] =
                          uses.size() == 2 ? uses[1 - i].triangle : Triangle::kNonManifoldEdge;
        }
    }
    const int threadsBefore = omp_get_max_threads();
    for (const int threads : {1, 2, 3, 16}) {
        omp_set_num_threads(threads);
        kernel.UpdateTopo(true, kAll);
        expectCounts(kernel, counts.openEdges, counts.nonManifoldEdges, counts.inconsistentEdges);
        for (std::int32_t t = 0; t < mesh.TriangleCount(); ++t) {
            for (int k = 0; k < 3; ++k) {
                ASSERT_EQ(mesh.Triangle(t)->Neighbour(k),
                          neighbours[static_cast<std::size_t>(t)][static_cast<std::size_t>(k)]);
            }
        }
    }
    omp_set_num_threads(threadsBefore);
}

TEST(Topology, ABigMeshIsRightOnAnyNumberOfThreadsAndInAnyOrder) {
    Part part = makeSphere(10.0f, 210'000);
    MeshKernel inOrder = part.kernel();
    expectSameAsPlain(inOrder);
    TestRandom random(3);
    for (std::size_t i = 1; i < part.triangles.size(); ++i) {
        std::swap(part.triangles[i],
                  part.triangles[static_cast<std::size_t>(random.below(static_cast<int>(i)))]);
    }
    MeshKernel shuffled = part.kernel();
    expectSameAsPlain(shuffled);
}

TEST(Topology, AClosedMeshHasNoOddEdges) {
    MeshKernel kernel = makeBox({0, 0, 0}, {1, 1, 1}).kernel();
    kernel.UpdateTopo(true, kAll);
    expectCounts(kernel, 0, 0, 0);
    for (std::int32_t t = 0; t < 12; ++t) {
        for (int k = 0; k < 3; ++k) EXPECT_GE(kernel.getMesh()->Triangle(t)->Neighbour(k), 0);
    }
}

TEST(Topology, ASingleTriangleIsOpenAllAround) {
    expectCounts(meshOf(3, {{0, 1, 2}}), 3, 0, 0);
}

TEST(Topology, NeighboursMeetAcrossTheEdgeTheyShare) {
    MeshKernel kernel = meshOf(4, {{0, 1, 2}, {1, 0, 3}});
    expectCounts(kernel, 4, 0, 0);
    EXPECT_EQ(kernel.getMesh()->Triangle(0)->Neighbour(0), 1);
    EXPECT_EQ(kernel.getMesh()->Triangle(1)->Neighbour(0), 0);
    EXPECT_EQ(kernel.getMesh()->Triangle(0)->Neighbour(1), Triangle::kOpenEdge);
}

TEST(Topology, TwoTrianglesThatRunAlongAnEdgeTheSameWayAreInconsistent) {
    expectCounts(meshOf(4, {{0, 1, 2}, {0, 1, 3}}), 4, 0, 1);
}

TEST(Topology, AnEdgeOfThreeTrianglesIsNonManifold) {
    MeshKernel kernel = meshOf(5, {{0, 1, 2}, {1, 0, 3}, {0, 1, 4}});
    expectCounts(kernel, 6, 1, 0);
    for (std::int32_t t = 0; t < 3; ++t) {
        EXPECT_EQ(kernel.getMesh()->Triangle(t)->Neighbour(0), Triangle::kNonManifoldEdge);
    }
}

TEST(Topology, ADoubledTriangleClosesOnItself) {
    expectCounts(meshOf(3, {{0, 1, 2}, {2, 1, 0}}), 0, 0, 0);
    expectCounts(meshOf(3, {{0, 1, 2}, {0, 1, 2}}), 0, 0, 3);
    expectCounts(meshOf(3, {{0, 1, 2}, {0, 1, 2}, {0, 1, 2}}), 0, 3, 0);
}

TEST(Topology, ACollapsedTriangleIsPassedOver) {
    MeshKernel kernel = meshOf(4, {{0, 1, 2}, {0, 0, 1}, {1, 0, 3}, {2, 2, 2}});
    expectCounts(kernel, 4, 0, 0);
    EXPECT_EQ(kernel.getMesh()->Triangle(0)->Neighbour(0), 2);
    for (int k = 0; k < 3; ++k) {
        EXPECT_EQ(kernel.getMesh()->Triangle(1)->Neighbour(k), Triangle::kOpenEdge);
    }
}

TEST(Topology, AHubOfManyTrianglesIsQuickAndRight) {
    const std::int32_t n = 20000;
    std::vector<UMesh<float>::Corners> fan;
    for (std::int32_t i = 1; i <= n; ++i) fan.push_back({0, i, i % n + 1});
    expectCounts(meshOf(n + 1, fan), n, 0, 0);
    // With the hub as the highest vertex instead.
    for (auto& corners : fan) {
        for (std::int32_t& v : corners) v = n - v;
    }
    expectCounts(meshOf(n + 1, fan), n, 0, 0);
}

TEST(Topology, AgreesWithAPlainVersionOnAnyMesh) {
    TestRandom random(3);
    for (int round = 0; round < 300; ++round) {
        const int vertices = 1 + random.below(12);
        std::vector<UMesh<float>::Corners> triangles;
        for (int t = random.below(40); t > 0; --t) {
            const std::int32_t a = random.below(vertices);
            const std::int32_t b = random.below(vertices);
            triangles.push_back({a, b, random.below(vertices)});
        }
        MeshKernel kernel = meshOf(vertices, triangles);
        expectSameAsPlain(kernel);
    }
    for (const Part& part : {makeGear(9, 5, 2).withoutEvery(4), makeTouchingSolids().welded(),
                             makeStack(2, 2, 2, 1).welded(), makeSoup(50, 4, 1)}) {
        MeshKernel kernel = part.kernel();
        expectSameAsPlain(kernel);
    }
}

TEST(Topology, OnlyThePartsAskedForAreBuilt) {
    MeshKernel kernel = makeBox({0, 0, 0}, {1, 1, 1}).withoutEvery(12).kernel();
    UMesh<float>& mesh = *kernel.getMesh();
    kernel.UpdateTopo(true, MeshKernel::kEdgeCounts);
    EXPECT_EQ(kernel.topology().openEdges, 3);
    EXPECT_EQ(mesh.Triangle(5)->Neighbour(0), Triangle::kOpenEdge);
    kernel.UpdateTopo(false, MeshKernel::kTriangleNeighbours);
    EXPECT_GE(mesh.Triangle(5)->Neighbour(0), 0);

    MeshKernel other = makeBox({0, 0, 0}, {1, 1, 1}).withoutEvery(12).kernel();
    other.UpdateTopo(true, MeshKernel::kTriangleNeighbours);
    EXPECT_EQ(other.topology().openEdges, 0);
    EXPECT_GE(other.getMesh()->Triangle(5)->Neighbour(0), 0);
}

TEST(Topology, WithoutRebuildWhatWasBuiltStays) {
    MeshKernel kernel = makeBox({0, 0, 0}, {1, 1, 1}).kernel();
    kernel.UpdateTopo(true, kAll);
    UTriangle<float>& triangle = *kernel.getMesh()->Triangle(0);
    const std::int32_t before = triangle.Neighbour(1);
    triangle.SetNeighbour(1, 99);
    kernel.UpdateTopo(false, kAll);
    EXPECT_EQ(triangle.Neighbour(1), 99);
    kernel.UpdateTopo(true, kAll);
    EXPECT_EQ(triangle.Neighbour(1), before);
}

TEST(Topology, RebuildingRenumbersNothing) {
    const Part part = makeTouchingSolids();
    MeshKernel kernel = part.kernel();
    kernel.UpdateTopo(true, 3);
    for (std::size_t t = 0; t < part.triangles.size(); ++t) {
        for (int k = 0; k < 3; ++k) {
            EXPECT_EQ(kernel.getMesh()->Triangle(static_cast<std::int32_t>(t))->V(k)->Index(),
                      part.triangles[t][static_cast<std::size_t>(k)]);
        }
    }
}

}  // namespace

#include <gtest/gtest.h>

#include <bit>
#include <limits>

#include "HostSide.h"
#include "TeskMeshData/SurfaceMeasures.h"
#include "TeskPartFiles/PartFiles.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

tesk_mesh_surface checkedOf(const tesk_mesh* mesh, int threads = 2) {
    auto surface = sized<tesk_mesh_surface>();
    const tesk_call call = callOn(threads);
    EXPECT_EQ(tesk_mesh_check(mesh, &call, &surface), TESK_OK) << lastError();
    EXPECT_EQ(surface.struct_size, sizeof surface);
    return surface;
}

tesk_mesh_surface checkedOf(const Part& part, const UMatrix4<float>& placement = {}) {
    return checkedOf(meshOf(part, placement).get());
}

void expectEdges(const tesk_mesh_surface& surface, int open, int nonManifold, int inconsistent) {
    EXPECT_EQ(surface.open_edges, open);
    EXPECT_EQ(surface.non_manifold_edges, nonManifold);
    EXPECT_EQ(surface.inconsistent_edges, inconsistent);
}

/// Every triangle with three vertices of its own.
Part soupOf(const Part& part) {
    Part soup;
    for (const Part::Corners& corners : part.triangles) {
        Part::Corners own;
        for (std::size_t k = 0; k < 3; ++k) {
            own[k] = soup.add(part.positions[static_cast<std::size_t>(corners[k])]);
        }
        soup.triangles.push_back(own);
    }
    return soup;
}

/// As a file's reader joins the corners.
Part weldedAsRead(const Part& part) {
    Tesk::PartMesh mesh;
    for (const UPoint3<float>& p : part.positions) mesh.positions.push_back({p.x, p.y, p.z});
    mesh.triangles = part.triangles;
    const Tesk::PartMesh joined = weld(mesh);
    Part welded;
    for (const Tesk::PartPoint& p : joined.positions) welded.add({p.x, p.y, p.z});
    welded.triangles = joined.triangles;
    return welded;
}

bool areEqual(const tesk_mesh_surface& a, const tesk_mesh_surface& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(CMeshCheck, ABoxIsSound) {
    const tesk_mesh_surface surface = checkedOf(makeBox({1, 2, 3}, {3, 5, 7}));
    expectEdges(surface, 0, 0, 0);
    EXPECT_EQ(surface.degenerate_triangles, 0);
    EXPECT_EQ(surface.volume, 24.0);
    EXPECT_EQ(surface.size[0], 2.0);
    EXPECT_EQ(surface.size[1], 3.0);
    EXPECT_EQ(surface.size[2], 4.0);
}

TEST(CMeshCheck, EachKindOfTroubleIsCounted) {
    const Part box = makeBox({0, 0, 0}, {2, 3, 4});
    Part open = box;
    open.triangles.pop_back();
    expectEdges(checkedOf(open), 3, 0, 0);

    Part twice = box;
    twice.triangles.push_back(box.triangles[0]);
    expectEdges(checkedOf(twice), 0, 3, 0);

    Part turned = box;
    std::swap(turned.triangles[0][0], turned.triangles[0][1]);
    expectEdges(checkedOf(turned), 0, 0, 3);

    EXPECT_EQ(checkedOf(box.turnedInsideOut()).volume, -24.0);

    Part flat = box;
    flat.triangles.push_back({0, 1, 0});
    flat.triangles.push_back({2, 2, 2});
    const tesk_mesh_surface surface = checkedOf(flat);
    expectEdges(surface, 0, 0, 0);
    EXPECT_EQ(surface.degenerate_triangles, 2);
    EXPECT_EQ(surface.volume, 24.0);
}

TEST(CMeshCheck, ItIsThatOfTheCppLibraries) {
    for (const Part& part :
         {makeBracket(30, 40, 5, 12), makeGear(12, 20.0f, 4.0f), makeTouchingSolids(),
          makeRandomAssembly(3), makeSphere(7.0f, 2000), makeSphere(9.0f, 120'000)}) {
        for (const Part& given : {part, part.withoutEvery(7), part.withDegenerateTriangles()}) {
            const Part welded = weldedAsRead(given);
            MeshKernel kernel = welded.kernel();
            kernel.UpdateTopo(true, MeshKernel::kEdgeCounts);
            const auto [degenerate, sixfold] =
                Tesk::measureSurface(welded.positions, welded.triangles);
            const auto size = Tesk::extentsOf(welded.positions);
            const MeshHandle mesh = meshOf(given);
            for (const int threads : {0, 1, 3}) {
                const tesk_mesh_surface surface = checkedOf(mesh.get(), threads);
                const TopologyCounts& counts = kernel.topology();
                expectEdges(surface, counts.openEdges, counts.nonManifoldEdges,
                            counts.inconsistentEdges);
                EXPECT_EQ(surface.degenerate_triangles, degenerate);
                EXPECT_EQ(std::bit_cast<std::uint64_t>(surface.volume),
                          std::bit_cast<std::uint64_t>(sixfold / 6.0));
                EXPECT_TRUE(std::equal(size.begin(), size.end(), surface.size));
            }
        }
    }
}

TEST(CMeshCheck, CornersAtEqualPositionsCountAsOne) {
    const Part part = makeGear(12, 20.0f, 4.0f);
    const tesk_mesh_surface joined = checkedOf(part);
    expectEdges(joined, 0, 0, 0);
    EXPECT_TRUE(areEqual(checkedOf(soupOf(part)), joined));
}

TEST(CMeshCheck, NeitherThePlacementNorUnusedVerticesMatter) {
    const Part part = makeBracket(30, 40, 5, 12);
    const tesk_mesh_surface surface = checkedOf(part);
    EXPECT_TRUE(areEqual(checkedOf(part, placements().back().matrix), surface));
    EXPECT_TRUE(areEqual(checkedOf(part.withUnusedVertices(5)), surface));
}

TEST(CMeshCheck, NothingHasNoSurface) {
    const tesk_mesh_surface surface = checkedOf(Part{});
    EXPECT_TRUE(areEqual(surface, sized<tesk_mesh_surface>()));
}

TEST(CMeshCheck, WithoutFiniteCoordinatesNothingIsWritten) {
    Part part = makeBox({0, 0, 0}, {2, 3, 4});
    part.positions[2].y = std::numeric_limits<float>::quiet_NaN();
    auto surface = sized<tesk_mesh_surface>();
    surface.open_edges = 77;
    EXPECT_EQ(tesk_mesh_check(meshOf(part).get(), nullptr, &surface), TESK_NO_RESULT);
    EXPECT_EQ(lastError(), "vertex 3 has a coordinate that is not finite");
    EXPECT_EQ(surface.open_edges, 77);
}

}  // namespace

#include "TeskMeshData/MeshKernel.h"

#include <gtest/gtest.h>

#include <string>

#include "TeskDebug/Exception.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/TestSize.h"

namespace {

using Corners = UMesh<float>::Corners;
using Vector = UVector3<float>;

std::string messageFor(const std::vector<Corners>& triangles) {
    const std::vector<UPoint3<float>> positions(5);
    try {
        MeshKernel kernel(positions, triangles);
    } catch (const Tesk::Exception& e) {
        return e.what();
    }
    return "";
}

TEST(MeshKernel, KeepsVerticesAndTrianglesInOrder) {
    const Part part = makeTable();
    const MeshKernel kernel = part.kernel();
    const UMesh<float>& mesh = *kernel.getMesh();
    ASSERT_EQ(mesh.VertexCount(), static_cast<std::int32_t>(part.positions.size()));
    ASSERT_EQ(mesh.TriangleCount(), static_cast<std::int32_t>(part.triangles.size()));
    for (std::int32_t i = 0; i < mesh.VertexCount(); ++i) {
        EXPECT_EQ(mesh.Vertex(i)->P(), part.positions[static_cast<std::size_t>(i)]);
        EXPECT_EQ(mesh.Vertex(i)->Index(), i);
        EXPECT_FALSE(mesh.Vertex(i)->IsD());
    }
    for (std::int32_t t = 0; t < mesh.TriangleCount(); ++t) {
        for (int k = 0; k < 3; ++k) {
            const std::int32_t corner =
                part.triangles[static_cast<std::size_t>(t)][static_cast<std::size_t>(k)];
            EXPECT_EQ(mesh.Triangle(t)->V(k)->Index(), corner);
            EXPECT_EQ(mesh.Triangle(t)->P(k), part.positions[static_cast<std::size_t>(corner)]);
        }
    }
}

TEST(MeshKernel, AnIndexOutOfRangeNamesTheTriangle) {
    EXPECT_EQ(messageFor({{0, 1, 2}, {2, 3, 4}}), "");
    EXPECT_EQ(messageFor({{0, 1, 2}, {2, 3, 5}}), "triangle 1 names vertex 5 of 5");
    EXPECT_EQ(messageFor({{0, 1, 2}, {0, 1, 2}, {-1, 3, 9}, {9, 9, 9}}),
              "triangle 2 names vertex -1 of 5");
    EXPECT_EQ(messageFor({{0, 2147483647, 0}}), "triangle 0 names vertex 2147483647 of 5");
}

TEST(MeshKernel, AMeshWithoutAnythingIsSound) {
    MeshKernel kernel;
    EXPECT_EQ(kernel.getMesh()->VertexCount(), 0);
    EXPECT_EQ(kernel.getMesh()->TriangleCount(), 0);
    EXPECT_EQ(kernel.GetBox().Volume(), 0.0f);
    kernel.UpdateTopo(true, MeshKernel::kTriangleNeighbours + MeshKernel::kEdgeCounts);
    kernel.updateTriangleNormal();
    EXPECT_EQ(kernel.topology().openEdges, 0);
    EXPECT_TRUE(kernel.getMatrix().isIdenticalMatrix());
}

TEST(MeshKernel, TheBoxIsThatOfThePlacedMeshWithoutDeletedVertices) {
    MeshKernel kernel = makeBox({0, 0, 0}, {2, 3, 4}).kernel();
    EXPECT_EQ(kernel.GetBox().MaxZ(), 4.0f);
    kernel.setMatrix(UMatrix4<float>::CreateTransfMatrix({10, 20, 30}));
    EXPECT_EQ(kernel.GetBox().MinX(), 10.0f);
    EXPECT_EQ(kernel.GetBox().MaxY(), 23.0f);
    EXPECT_EQ(kernel.GetBox().Volume(), 24.0f);
    UMesh<float>& mesh = *kernel.getMesh();
    for (std::int32_t i = 0; i < 8; ++i) mesh.Vertex(i)->SetD(mesh.Vertex(i)->P().z > 0.0f);
    EXPECT_EQ(kernel.GetBox().MaxZ(), 30.0f);
    mesh.Vertex(0)->SetP({-5, 0, 0});
    EXPECT_EQ(kernel.GetBox().MinX(), 5.0f);
}

TEST(MeshKernel, TheBoxOfTheSameKernelStaysWhereItIs) {
    MeshKernel kernel = makeBox({0, 0, 0}, {2, 3, 4}).kernel();
    const UBox3<float>& box = kernel.GetBox();
    kernel.getMesh()->Vertex(7)->SetP({9, 9, 9});
    EXPECT_EQ(&kernel.GetBox(), &box);
    EXPECT_EQ(box.MaxX(), 9.0f);
}

TEST(MeshKernel, TriangleNormalsAreRightHandedUnitVectorsInTheMeshsOwnFrame) {
    MeshKernel kernel = makeBox({0, 0, 0}, {2, 3, 4}).kernel(placements().back().matrix);
    EXPECT_EQ(kernel.getMesh()->Triangle(0)->N(), Vector());
    kernel.updateTriangleNormal();
    const Vector expected[] = {{0, 0, -1}, {0, 0, 1}, {0, -1, 0}, {0, 1, 0}, {-1, 0, 0}, {1, 0, 0}};
    for (std::int32_t t = 0; t < 12; ++t) {
        EXPECT_EQ(kernel.getMesh()->Triangle(t)->N(), expected[t / 2]);
    }
    kernel.getMesh()->Vertex(0)->SetP({0, 0, 2});
    kernel.updateTriangleNormal();
    EXPECT_NE(kernel.getMesh()->Triangle(0)->N(), expected[0]);
}

TEST(MeshKernel, ATriangleWithoutAreaHasNoNormal) {
    MeshKernel kernel = Part().withDegenerateTriangles().kernel();
    kernel.updateTriangleNormal();
    for (std::int32_t t = 0; t < kernel.getMesh()->TriangleCount(); ++t) {
        EXPECT_EQ(kernel.getMesh()->Triangle(t)->N(), Vector());
    }
}

TEST(MeshKernel, CopiesShareTheMesh) {
    const MeshKernel kernel = makeTable().kernel();
    MeshKernel copy = kernel;
    copy.setMatrix(placements().back().matrix);
    EXPECT_EQ(copy.getMesh(), kernel.getMesh());
    EXPECT_TRUE(kernel.getMatrix().isIdenticalMatrix());
}

TEST(MeshKernel, AMillionTrianglesAreBuiltWithTheirTopology) {
    const int cells = testsAreSmall() ? 100 : 708;
    MeshKernel kernel = makeWavySheet(cells, 100.0f).kernel();
    ASSERT_EQ(kernel.getMesh()->TriangleCount(), 2 * cells * cells);
    kernel.UpdateTopo(true, MeshKernel::kTriangleNeighbours + MeshKernel::kEdgeCounts);
    kernel.updateTriangleNormal();
    EXPECT_EQ(kernel.topology().openEdges, 4 * cells);
    EXPECT_EQ(kernel.topology().nonManifoldEdges, 0);
    EXPECT_EQ(kernel.topology().inconsistentEdges, 0);
    // The first two triangles are the halves of one cell.
    EXPECT_EQ(kernel.getMesh()->Triangle(0)->Neighbour(2), 1);
    EXPECT_EQ(kernel.getMesh()->Triangle(1)->Neighbour(0), 0);
}

}  // namespace

#include "orient/turn/Flatten.h"

#include <gtest/gtest.h>

#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

using namespace Tesk::orient;

namespace {

TEST(FlatMesh, KeepsEveryTriangleWithItsCornersInOrder) {
    const Part part = makeGear(7, 5.0f, 2.0f).withUnusedVertices(3);
    MeshKernel kernel = part.kernel(placements().back().matrix);
    for (std::int32_t i = 0; i < kernel.getMesh()->VertexCount(); i += 4) {
        kernel.getMesh()->Vertex(i)->SetD(true);
    }
    const FlatMesh flat = flatten(*kernel.getMesh(), kernel.getMatrix());
    ASSERT_EQ(flat.corners.size(), part.triangles.size());
    for (std::size_t t = 0; t < flat.corners.size(); ++t) {
        for (std::size_t k = 0; k < 3; ++k) {
            const auto vertex = static_cast<std::size_t>(part.triangles[t][k]);
            ASSERT_EQ(flat.point(flat.corners[t][k]), part.positions[vertex]);
        }
    }
    EXPECT_EQ(flat.placement, kernel.getMatrix());
}

TEST(FlatMesh, VerticesThatAreNotDeletedComeFirstInListOrder) {
    const Part part = makeBox({0, 0, 0}, {1, 2, 3});
    MeshKernel kernel = part.kernel();
    for (const std::int32_t i : {0, 3, 4}) kernel.getMesh()->Vertex(i)->SetD(true);
    const FlatMesh flat = flatten(*kernel.getMesh(), kernel.getMatrix());
    ASSERT_EQ(flat.keptVertices, 5u);
    ASSERT_EQ(flat.x.size(), 8u);
    std::int32_t place = 0;
    for (const std::size_t i : {1u, 2u, 5u, 6u, 7u}) {
        EXPECT_EQ(flat.point(place++), part.positions[i]);
    }
}

TEST(FlatMesh, ThePlacedBoxIsTheBoxOfTheKernel) {
    MeshKernel kernel = makeTable().withUnusedVertices(9).kernel(placements().back().matrix);
    kernel.getMesh()->Vertex(11)->SetD(true);
    const FlatMesh flat = flatten(*kernel.getMesh(), kernel.getMatrix());
    const UBox3<float>& box = kernel.GetBox();
    EXPECT_EQ(flat.placedBox.MinX(), box.MinX());
    EXPECT_EQ(flat.placedBox.MaxX(), box.MaxX());
    EXPECT_EQ(flat.placedBox.MinY(), box.MinY());
    EXPECT_EQ(flat.placedBox.MaxY(), box.MaxY());
    EXPECT_EQ(flat.placedBox.MinZ(), box.MinZ());
    EXPECT_EQ(flat.placedBox.MaxZ(), box.MaxZ());
}

TEST(FlatMesh, AnEmptyMeshIsFlatToo) {
    const MeshKernel kernel;
    const FlatMesh flat = flatten(*kernel.getMesh(), kernel.getMatrix());
    EXPECT_TRUE(flat.corners.empty());
    EXPECT_TRUE(flat.x.empty());
    EXPECT_EQ(flat.keptVertices, 0u);
    EXPECT_EQ(flat.placedBox.Volume(), 0.0f);
}

}  // namespace

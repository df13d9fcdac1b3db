#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "OrientOptimizer.h"
#include "placement/BoxPlacement.h"
#include "plain/PlainPlacement.h"
#include "shapes/BoxShapes.h"
#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"
#include "tools/FloatBits.h"
#include "tools/TestSize.h"

using Tesk::placement::placeByMinBox;

namespace {

OrientedBox3 leastBoxOf(const MeshKernel& mesh) {
    const Points points = plainPlacedPoints(mesh);
    MinBoundingBox calculator(1);
    return calculator(static_cast<int>(points.size()), points.data());
}

void expectSame(const UMatrix4<float>& plain, const UMatrix4<float>& shipped) {
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            EXPECT_TRUE(sameBits(plain.at(row, col), shipped.at(row, col)))
                << row << ", " << col << ": plain " << hexFloat(plain.at(row, col)) << ", shipped "
                << hexFloat(shipped.at(row, col));
        }
    }
}

/// Lying flat and standing, and through the exported function.
void compare(MeshKernel mesh) {
    const OrientedBox3 box = leastBoxOf(mesh);
    const UMatrix4<float> flat = plainPlacement(mesh, box, /*layFlat=*/true);
    UMatrix4<float> shipped;
    placeByMinBox(&mesh, shipped, nullptr, /*layFlat=*/true);
    expectSame(flat, shipped);
    placeByMinBox(&mesh, shipped, nullptr, /*layFlat=*/false);
    expectSame(plainPlacement(mesh, box, /*layFlat=*/false), shipped);
    OrientOptimizer::calculateOrients_minBoundingBox(&mesh, shipped, nullptr);
    expectSame(flat, shipped);
}

TEST(PlacementReference, PartsInEveryPlacementAgree) {
    const std::vector<Part> parts = {makeBox({0, 0, 0}, {2, 3, 4}),
                                     makeBox({-5, 1, 1}, {5, 3, 2}),
                                     makeBox({0, 0, 0}, {5, 5, 1}),
                                     makeColumnWithArm(),
                                     makePrism(),
                                     makeBracket(30, 20, 4, 12),
                                     makeTable(),
                                     makeCylinder(3, 10, 24),
                                     makeGear(9, 12, 4),
                                     makeSphere(2, 200),
                                     makeColumnWithArm().withUnusedVertices(5)};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        for (const Placement& placement : placements()) {
            SCOPED_TRACE(testing::Message() << "part " << i << ", " << placement.name);
            compare(parts[i].kernel(placement.matrix));
        }
    }
}

TEST(PlacementReference, DeletedVerticesTakePartInTheBoxButNotInTheCentre) {
    MeshKernel mesh = makeColumnWithArm().withUnusedVertices(4).kernel();
    mesh.getMesh()->Vertex(mesh.getMesh()->VertexCount() - 1)->SetD(true);
    compare(mesh);
}

TEST(PlacementReference, RandomPartsAgree) {
    TestRandom random(31);
    for (int i = 0; i < (testsAreSmall() ? 50 : 1000) && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        compare(MeshKernel(noisyPart(random), {}));
    }
}

}  // namespace

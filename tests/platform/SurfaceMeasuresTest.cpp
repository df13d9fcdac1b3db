#include "TeskMeshData/SurfaceMeasures.h"

#include <gtest/gtest.h>

#include "shapes/CadShapes.h"
#include "shapes/Shapes.h"

namespace {

Tesk::SurfaceMeasures measured(const Part& part) {
    return Tesk::measureSurface(part.positions, part.triangles);
}

TEST(SurfaceMeasures, AClosedMeshEnclosesItsVolume) {
    const Part box = makeBox({1, 2, 3}, {3, 5, 7});
    EXPECT_EQ(measured(box).volumeSixfold, 6.0 * 24.0);
    EXPECT_EQ(measured(box.moved(100, -50, 8)).volumeSixfold, 6.0 * 24.0);
    EXPECT_EQ(measured(makeBracket(30, 40, 5, 12)).volumeSixfold, 6.0 * 12 * (30 * 5 + 35 * 5));
}

TEST(SurfaceMeasures, TheVolumeOfAMeshInsideOutIsNegative) {
    EXPECT_EQ(measured(makeBox({0, 0, 0}, {2, 3, 4}).turnedInsideOut()).volumeSixfold, -144.0);
}

TEST(SurfaceMeasures, SmallVolumesFarAwayAreMeasuredInDouble) {
    // In float the products would lose all digits of the volume.
    const Part far = makeBox({4096, 4096, 4096}, {4096.25f, 4096.25f, 4096.25f});
    EXPECT_EQ(measured(far).volumeSixfold, 6.0 / 64);
}

TEST(SurfaceMeasures, TrianglesWithoutAreaAreCountedExactly) {
    Part part = makeBox({0, 0, 0}, {2, 3, 4});
    EXPECT_EQ(measured(part).degenerate, 0);
    part.triangles.push_back({1, 1, 1});
    part.triangles.push_back({1, 2, 1});
    part.triangles.push_back({part.add({0, 0, 1}), part.add({0, 0, 2}), part.add({0, 0, 9})});
    EXPECT_EQ(measured(part).degenerate, 3);
    // As flat as floats can say, but not without area.
    const std::int32_t high = part.add({0, 0, 1});
    part.triangles.push_back({high, part.add({1e-30f, 0, 2}), part.add({0, 0, 9})});
    EXPECT_EQ(measured(part).degenerate, 3);
}

TEST(SurfaceMeasures, NothingMeasuresNothing) {
    EXPECT_EQ(measured({}).degenerate, 0);
    EXPECT_EQ(measured({}).volumeSixfold, 0.0);
    EXPECT_EQ(Tesk::extentsOf({}), (std::array{0.0, 0.0, 0.0}));
}

TEST(SurfaceMeasures, ExtentsAreDifferencesInDouble) {
    const std::vector<UPoint3<float>> points = {{-1, 5, 1e8f}, {4, 2, -1.0f}};
    EXPECT_EQ(Tesk::extentsOf(points), (std::array{5.0, 3.0, 100000001.0}));
}

}  // namespace

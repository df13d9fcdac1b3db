#include "pose/spin/WallSpin.h"

#include <gtest/gtest.h>

#include "PoseShapes.h"

using namespace Tesk::pose;

namespace {

PoseSize spun(const Part& part, bool isByWalls = true) {
    const PoseMesh mesh(part.kernel());
    return sizeOf(mesh, isByWalls ? withWallsAlongAxes(mesh, {}) : withLeastRectangle(mesh, {}));
}

Part turnedAboutZ(const Part& part, float angleDeg) {
    return part.placed(
        UMatrix4<float>::CreateRotateMatrix(angleDeg * 3.14159265f / 180.0f, {0, 0, 1}));
}

TEST(WallSpin, LaysTheWallsOfABoxAlongTheAxes) {
    const Part box = makeBox({0, 0, 0}, {40, 15, 20});
    for (const float angleDeg : {-170.0f, -80.0f, -44.0f, 0.2f, 17.0f, 45.0f, 91.0f, 133.0f}) {
        const PoseSize size = spun(turnedAboutZ(box, angleDeg));
        EXPECT_NEAR(size.alongX, 40.0, 1e-3) << angleDeg;
        EXPECT_NEAR(size.alongY, 15.0, 1e-3) << angleDeg;
    }
}

TEST(WallSpin, LeavesWhatLiesRightExactlyAsItIs) {
    for (const Part& part :
         {makeBox({0, 0, 0}, {40, 15, 20}), makeBox({0, 0, 0}, {10, 10, 10}), makeTable()}) {
        const PoseMesh mesh(part.kernel());
        const PoseSize size = sizeOf(mesh, {});
        if (size.alongX < size.alongY) continue;
        EXPECT_TRUE(withWallsAlongAxes(mesh, {}).matrix().isIdenticalMatrix());
    }
}

TEST(WallSpin, TheLargerWallsDecide) {
    // A triangular prism: its widest wall lies along an axis.
    const Part prism = makeExtrusion({{0, 0}, {30, 0}, {12, 20}}, 0, 10);
    const PoseSize size = spun(turnedAboutZ(prism, 23.0f));
    EXPECT_NEAR(size.alongX, 30.0, 1e-3);
    EXPECT_NEAR(size.alongY, 20.0, 1e-3);
}

TEST(WallSpin, WithoutWallsTheLeastRectangleDecides) {
    // A flat sheet has no walls at all.
    Part sheet = makeBox({0, 0, 0}, {40, 15, 0});
    const PoseSize size = spun(turnedAboutZ(sheet, 30.0f));
    EXPECT_NEAR(size.alongX, 40.0, 1e-2);
    EXPECT_NEAR(size.alongY, 15.0, 1e-2);
}

TEST(WallSpin, TheLeastRectangleMayBeAskedFor) {
    // A square room with its corners cut: walls along the axes, the least rectangle across.
    const Part part = makeExtrusion({{0, 0}, {60, 60}, {50, 70}, {-10, 10}}, 0, 10);
    const PoseSize size = spun(turnedAboutZ(part, 12.0f), /*isByWalls=*/false);
    EXPECT_NEAR(size.alongX, 84.853, 1e-2);
    EXPECT_NEAR(size.alongY, 14.142, 1e-2);
}

TEST(WallSpin, ARoundPartStaysAsItIs) {
    const PoseMesh mesh(makeSphere(20.0f, 3000).kernel());
    EXPECT_TRUE(withWallsAlongAxes(mesh, {}).matrix().isIdenticalMatrix());
}

}  // namespace

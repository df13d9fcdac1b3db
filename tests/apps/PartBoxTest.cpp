#include "poses/PartBox.h"

#include <gtest/gtest.h>

#include "part/MeshChecks.h"
#include "poses/Turn.h"

namespace {

using App::Lengths;
using App::PartBox;

OrientedBox3 leftHandedBox() {
    OrientedBox3 box;
    box.center = {10, 20, 30};
    box.axis[0] = {0, 1, 0};
    box.axis[1] = {1, 0, 0};
    box.axis[2] = {0, 0, 1};
    box.extent = {1, 2, 3};
    return box;
}

TEST(PartBox, ALeftHandedBoxKeepsItsPlaceAndItsThirdAxis) {
    const PartBox box = App::readAs(leftHandedBox(), Lengths::kHalf);
    EXPECT_GT((box.axes[0] * box.axes[1]) | box.axes[2], 0.0f);
    EXPECT_EQ(box.axes[2], UVector3<float>(0, 0, 1));
    const App::TriangleMesh mesh = App::meshOf(box);
    EXPECT_DOUBLE_EQ(Tesk::measureSurface(mesh.positions, mesh.triangles).volumeSixfold / 6.0,
                     48.0);
    EXPECT_DOUBLE_EQ(box.volume(), 48.0);
    const auto size = App::sizeOf(mesh);
    EXPECT_EQ(size, (std::array<double, 3>{4.0, 2.0, 6.0}));
}

TEST(PartBox, FullLengthsAreHalved) {
    EXPECT_DOUBLE_EQ(App::readAs(leftHandedBox(), Lengths::kFull).volume(), 6.0);
}

TEST(Turn, IsFoundForEveryAngleUpToHalfATurn) {
    const UVector3<float> axes[] = {{1, 0, 0}, {0, -1, 0}, {0, 0, 1}, {1, 2, -3}, {-5, 1, 0.1f}};
    for (const UVector3<float>& axis : axes) {
        for (const float angle : {1e-4f, 0.3f, 1.5707963f, 2.1f, 3.0f, 3.1415f}) {
            const App::Turn turn = App::turnIn(UMatrix4<float>::CreateRotateMatrix(angle, axis) *
                                               UMatrix4<float>::CreateTransfMatrix({7, 8, 9}));
            EXPECT_NEAR(turn.angleRad, angle, 1e-6f);
            // A small turn's axis is known no better than its matrix.
            const float tolerance = angle < 0.1f ? 1e-2f : 1e-5f;
            for (int k = 0; k < 3; ++k) {
                EXPECT_NEAR(turn.axis[k], axis.GetNormal()[k], tolerance) << angle;
            }
        }
    }
}

TEST(Turn, OfTheIdentityIsToLeaveThePartAsItIs) {
    const App::Turn turn = App::turnIn(UMatrix4<float>());
    EXPECT_EQ(turn.angleRad, 0.0f);
    EXPECT_TRUE(turn.axis.IsZeroLength());
    EXPECT_EQ(App::textOf(turn), "leave the part as it is");
}

}  // namespace

#include "pose/resting/NearPlate.h"

#include <gtest/gtest.h>

#include "BuildPose.h"
#include "pose/geometry/PoseTurn.h"
#include "pose/resting/HullFaceSnap.h"
#include "shapes/Shapes.h"
#include "tools/TestRandom.h"

using namespace Tesk::pose;

namespace {

using OptimizeOrient::measurePose;

using Vector = UVector3<double>;

TEST(NearPlate, TheRoomIsAtLeastTheContactOfEveryPlateWithinReach) {
    TestRandom random(5);
    for (int round = 0; round < 30; ++round) {
        Part part = makeSphere(random.in(5.0f, 60.0f), 2000);
        if (round % 2 == 0) part = part.scaled(1.0f, random.in(0.5f, 2.0f), random.in(0.3f, 2.0f));
        const MeshKernel kernel = part.kernel();
        const PoseMesh mesh(kernel);
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        const Vector up = UVector3<float>(x, y, random.in(-1.0f, 1.0f)).As<double>().GetNormal();
        const double room = nearPlate(mesh, up, kSnapDeg, 1e30).room;
        for (int k = 0; k < 10; ++k) {
            // Any tilt within reach.
            const Vector side(static_cast<double>(random.in(-1.0f, 1.0f)),
                              static_cast<double>(random.in(-1.0f, 1.0f)),
                              static_cast<double>(random.in(-1.0f, 1.0f)));
            const Vector tilted = (up + (side * up).GetNormal() * 0.05).GetNormal();
            const OptimizeOrient::BuildPose pose =
                measurePose(kernel, {}, PoseTurn::ontoUp(tilted).matrix());
            EXPECT_GE(room, static_cast<double>(pose.measures.contactArea));
        }
    }
}

}  // namespace

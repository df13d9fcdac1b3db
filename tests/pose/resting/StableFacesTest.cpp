#include "pose/resting/StableFaces.h"

#include <gtest/gtest.h>

#include <cmath>

#include "shapes/Shapes.h"

using namespace Tesk::pose;

namespace {

TEST(StableFaces, AreThoseOfABoxTheLargestFirst) {
    const PoseMesh mesh(makeBox({0, 0, 0}, {30, 20, 10}).kernel());
    const std::vector<UVector3<float>> ups = upOnStableFaces(mesh, 12);
    ASSERT_EQ(ups.size(), 6u);
    EXPECT_NEAR(std::fabs(ups[0].z), 1.0f, 1e-6f);
    EXPECT_NEAR(std::fabs(ups[2].y), 1.0f, 1e-6f);
    EXPECT_NEAR(std::fabs(ups[5].x), 1.0f, 1e-6f);
    EXPECT_EQ(upOnStableFaces(mesh, 2).size(), 2u);
}

TEST(StableFaces, LeaveOutThoseBesideTheCentroid) {
    // A tower that leans over its base by far: it falls from there, and lies on its sides.
    Part tower = makeBox({0, 0, 0}, {10, 10, 60});
    for (UPoint3<float>& p : tower.positions) p.x += p.z;
    const std::vector<UVector3<float>> ups = upOnStableFaces(PoseMesh(tower.kernel()), 12);
    EXPECT_EQ(ups.size(), 4u);
    for (const UVector3<float>& up : ups) EXPECT_LT(std::fabs(up.z), 0.9f);
}

}  // namespace

#include "pose/mesh/FarthestVertex.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "PoseShapes.h"
#include "tools/TestRandom.h"

using namespace Tesk::pose;

namespace {

TEST(FarthestVertex, IsTheOneOfAPlainSearch) {
    TestRandom random(8);
    const Part part = makeSphere(20.0f, 3000).placed(someTurn());
    const PoseMesh mesh(part.kernel());
    for (int round = 0; round < 100; ++round) {
        const float x = random.in(-1.0f, 1.0f);
        const float y = random.in(-1.0f, 1.0f);
        const UVector3<float> d(x, y, random.in(-1.0f, 1.0f));
        float most = -1e30f;
        for (const UPoint3<float>& p : part.positions) most = std::max(most, p.Dot(d));
        const int guess = round % 2 == 0 ? -1 : random.below(1000);
        EXPECT_EQ(mesh.placed(farthestAlong(mesh, d, guess)).Dot(d), most);
    }
}

}  // namespace

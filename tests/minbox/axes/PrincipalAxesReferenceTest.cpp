#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "ReferencePointSets.h"
#include "plain/PlainPrincipalBox.h"
#include "tools/TestSize.h"

using namespace Tesk::minbox;

namespace {

void compare(const Points& points) {
    EXPECT_TRUE(agree(plainPrincipalBox(points),
                      MinBoundingBox::generateOBB(points.data(), countOf(points))));
}

TEST(PrincipalAxesReference, TheBoxAgreesOnEveryShapeAndSampleMesh) {
    for (const ReferenceSet& set : referenceShapesAndMeshes()) {
        SCOPED_TRACE(set.name);
        const Points points = set.load();
        if (!points.empty()) compare(points);
    }
}

TEST(PrincipalAxesReference, TheBoxAgreesOnRandomSolids) {
    TestRandom random(24);
    for (int i = 0; i < (testsAreSmall() ? 500 : 20000) && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        compare(randomSolid(random));
    }
}

TEST(PrincipalAxesReference, TheBoxAgreesOnSmallSets) {
    TestRandom random(25);
    for (int i = 0; i < (testsAreSmall() ? 500 : 20000) && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const int count = 1 + random.below(6);
        compare(pointsOnGrid(count, 1 + random.below(4), random));
    }
}

}  // namespace

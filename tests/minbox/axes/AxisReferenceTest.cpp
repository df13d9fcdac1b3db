#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "ReferencePointSets.h"
#include "plain/PlainAxisBox.h"
#include "tools/TestSize.h"

using namespace Tesk::minbox;

namespace {

UVector3<float> randomAxis(TestRandom& random) {
    const float x = random.in(-2, 2);
    const float y = random.in(-2, 2);
    return {x, y, random.in(-2, 2)};
}

/// Coordinate axes with their opposites, a scaled one, and some in no special direction.
std::vector<UVector3<float>> someAxes() {
    std::vector<UVector3<float>> axes = {{1, 0, 0},  {0, 1, 0}, {0, 0, 1},        {-1, 0, 0},
                                         {0, -1, 0}, {0, 2, 0}, {0.25f, 0.5f, 1}, {0, 3, 4},
                                         {1, 1, 1},  {1, 1, 0}};
    TestRandom random(3);
    for (int i = 0; i < 12; ++i) axes.push_back(randomAxis(random));
    return axes;
}

void compare(const Points& points, const std::vector<UVector3<float>>& axes) {
    const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
    MinBoundingBox calculator;
    for (const UVector3<float>& axis : axes) {
        SCOPED_TRACE(testing::Message() << axis.x << " " << axis.y << " " << axis.z);
        EXPECT_TRUE(
            agree(plainOrientedBox(plainAxisBox(hull, axis)),
                  calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), axis)));
    }
}

class AxisReference : public OnReferenceSets {};

TEST_P(AxisReference, TheBoxAgreesForEveryAxis) {
    compare(m_points, someAxes());
}

INSTANTIATE_TEST_SUITE_P(Reference, AxisReference, testing::ValuesIn(referenceShapesAndMeshes()),
                         nameOfSet);

TEST(AxisReferenceRandom, TheBoxAgrees) {
    TestRandom random(23);
    for (int i = 0; i < (testsAreSmall() ? 100 : 3000) && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const Points points = randomSolid(random);
        compare(points, {randomAxis(random)});
    }
}

}  // namespace

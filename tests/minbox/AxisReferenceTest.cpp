#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "PlainAxisBox.h"
#include "ReferencePointSets.h"
#include "TestSize.h"

namespace {

/// Coordinate axes with their opposites, a scaled one, and some in no special direction.
std::vector<UVector3<float>> axes() {
    std::vector<UVector3<float>> result = {{1, 0, 0},  {0, 1, 0}, {0, 0, 1},        {-1, 0, 0},
                                           {0, -1, 0}, {0, 2, 0}, {0.25f, 0.5f, 1}, {0, 3, 4},
                                           {1, 1, 1},  {1, 1, 0}};
    TestRandom random(3);
    for (int i = 0; i < 12; ++i) {
        result.emplace_back(random.in(-2, 2), random.in(-2, 2), random.in(-2, 2));
    }
    return result;
}

class AxisReference : public testing::TestWithParam<NamedPoints> {};

TEST_P(AxisReference, TheBoxAgreesForEveryAxis) {
    const Points& points = GetParam().points;
    const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
    const PlainHull plain(hull, countOf(points));
    MinBoundingBox calculator;
    for (const UVector3<float>& axis : axes()) {
        SCOPED_TRACE(testing::Message() << axis.x << " " << axis.y << " " << axis.z);
        const std::vector<int> polygon = plainAxisPolygon(hull, axis);
        if (polygon.size() < 3) continue;
        const PlainBoxRecord record = plainAxisBox(plain, axis, polygon);
        if (record.volume == -1.0) continue;
        EXPECT_TRUE(agree(plainOrientedBox(record), calculator.minBaseAreaBoxAroundAxis(
                                                        countOf(points), points.data(), axis)));
    }
}

INSTANTIATE_TEST_SUITE_P(Reference, AxisReference,
                         testing::ValuesIn(referenceSolidsAndMeshes(2000)), nameOfPoints);

}  // namespace

#include "minbox/bound/SupportMap.h"

#include <gtest/gtest.h>

#include <vector>

#include "PreparedHull.h"

using namespace Tesk::minbox;

namespace {

std::vector<Vector> someDirections(TestRandom& random) {
    std::vector<Vector> directions = {{1, 0, 0}, {0, -2, 0}, {0, 0, 1}, {1, 1, 0}, {-1, 1, 1}};
    for (const UPoint3<float>& p : pointsOnSphere(200, random)) {
        directions.emplace_back(3.0 * p.x, 3.0 * p.y, 3.0 * p.z);
    }
    return directions;
}

Vector nearlyAcross(const SupportMap& supports, const Vector& direction) {
    Vector across;
    supports.nearlyAcross({&direction, 1}, {&across, 1});
    return across;
}

TEST(SupportMap, FindsTheWidthAlongAnyDirection) {
    TestRandom random(3);
    const std::vector<Points> parts = {boxCorners(2, 3, 4), pointsOnSphere(3000, random),
                                       transformed(needle(20, random), randomTurn(random)),
                                       roundedBox(30, 20, 10, 2, 8)};
    for (std::size_t part = 0; part < parts.size(); ++part) {
        SCOPED_TRACE(part);
        const PreparedHull prepared(parts[part]);
        const SupportMap supports(prepared.hull);
        const HullPoints& points = prepared.hull.points();
        for (const Vector& direction : someDirections(random)) {
            const double width = points.rangeAlong(points[0], direction).length();
            const double rounding = 1e-13 * 100.0 * direction.GetLength();
            EXPECT_NEAR(supports.across(direction) | direction, width, rounding);
            EXPECT_NEAR(supports.across(direction * -1.0) | direction, -width, rounding);
            EXPECT_LE(nearlyAcross(supports, direction) | direction, width + rounding);
        }
    }
}

TEST(SupportMap, NearlyFindsTheWidthOfARoundPart) {
    TestRandom random(4);
    const PreparedHull prepared(pointsOnSphere(3000, random));
    const SupportMap supports(prepared.hull);
    for (const Vector& direction : someDirections(random)) {
        const double width = supports.across(direction) | direction;
        EXPECT_GT(nearlyAcross(supports, direction) | direction, width * (1.0 - 1e-3));
    }
}

}  // namespace

#include "minbox/hull/HeightFinder.h"

#include <gtest/gtest.h>

#include "PreparedHull.h"

using namespace Tesk::minbox;

namespace {

TEST(HeightFinder, FindsTheRangeThatAScanFinds) {
    TestRandom random(43);
    std::vector<NamedPoints> sets = comparisonPoints();
    for (int i = 0; i < 200; ++i) sets.push_back({"Noisy", noisyPart(random)});
    for (const NamedPoints& set : sets) {
        const SearchHull hull = hullOf(set.points);
        const HullPoints& points = hull.points();
        HeightFinder heights(hull);
        for (int face = 0; face < hull.faceCount(); ++face) {
            const Vector& normal = hull.normal(face);
            const Vector origin = points[random.below(points.count())];
            ASSERT_EQ(heights.rangeAlong(origin, normal), points.rangeAlong(origin, normal))
                << set.name;
        }
    }
}

}  // namespace

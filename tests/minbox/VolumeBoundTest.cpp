#include "VolumeBound.h"

#include <gtest/gtest.h>

#include "BoxTestSupport.h"
#include "FaceSearch.h"
#include "SearchHull.h"

namespace {

struct Prepared {
    explicit Prepared(const Points& points)
        : impl(1), hull(impl, countOf(points), points.data()), bound(impl, hull) {}

    MinBoundingBoxImpl impl;
    SearchHull hull;
    VolumeBound bound;
};

TEST(VolumeBound, OfABoxAlongItsSidesIsItsVolume) {
    const Prepared prepared(boxCorners(2, 3, 4));
    for (const Vector& normal : {Vector(1, 0, 0), Vector(0, -7, 0), Vector(0, 0, 0.01)}) {
        EXPECT_LE(prepared.bound.along(normal), 24.0);
        EXPECT_GT(prepared.bound.along(normal), 24.0 * (1.0 - 1e-9));
    }
}

TEST(VolumeBound, OfARoundPartIsNearlyItsShadowTimesItsHeight) {
    const Prepared prepared(roundedBox(30, 20, 10, 2, 8));
    EXPECT_GT(prepared.bound.along({0, 0, 1}), 0.95 * 30 * 20 * 10);
}

TEST(VolumeBound, IsBelowTheBoxOfEveryFace) {
    TestRandom random(9);
    std::vector<NamedPoints> sets = comparisonPoints(/*isSmall=*/true);
    for (int i = 0; i < 40; ++i) {
        const Points part = transformed(bracketCorners(random), randomTurn(random));
        sets.push_back({"bracket", withNoise(part, 1e-4, random)});
        sets.push_back({"thin", transformed(needle(20, random), randomTurn(random))});
    }
    int compared = 0;
    for (const NamedPoints& set : sets) {
        SCOPED_TRACE(set.name);
        const Prepared prepared(set.points);
        for (int face = 0; face < prepared.hull.faceCount(); ++face) {
            VolumeLimit limit;
            FaceSearch search(prepared.impl, prepared.hull, prepared.bound, limit);
            search.run({face, face + 1}, [] { return true; });
            if (search.best().volume == -1.0) continue;
            ++compared;
            const Vector& normal = prepared.hull.normals()[static_cast<std::size_t>(face)];
            ASSERT_LE(prepared.bound.along(normal), search.best().volume) << "face " << face;
        }
    }
    EXPECT_GT(compared, 2000);
}

TEST(FaceSearch, TellsTheOthersOfWhatItFindsAndPassesOverWhatIsWorse) {
    const Prepared prepared(boxCorners(2, 3, 4));
    VolumeLimit limit;
    FaceSearch search(prepared.impl, prepared.hull, prepared.bound, limit);
    int steps = 0;
    const auto count = [&] {
        ++steps;
        return true;
    };
    search.run({0, 12}, count);
    EXPECT_EQ(search.best().volume, 24.0);
    EXPECT_EQ(limit.get(), 24.0);
    EXPECT_EQ(steps, 12);
    limit.lowerTo(20.0);  // as if another thread had found less
    search.run({0, 12}, count);
    EXPECT_EQ(search.best().volume, -1.0);
    EXPECT_EQ(steps, 24) << "progress counts the faces passed over, too";
}

}  // namespace

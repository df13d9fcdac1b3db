#include <gtest/gtest.h>

#include <limits>

#include "PreparedHull.h"
#include "minbox/edges/EdgeSearch.h"
#include "minbox/fit/BoxFit.h"
#include "minbox/volume/VolumeSearch.h"

using namespace Tesk::minbox;

namespace {

OrientedBox3 boxOf(const Points& points, unsigned int threads = 1) {
    MinBoundingBox calculator(threads);
    return calculator(countOf(points), points.data());
}

/// What the two searches find on their own.
struct Found {
    VolumeCandidate faces;
    std::optional<VolumeCandidate> edges;
};

Found searchApart(const Points& points) {
    MinBoundingBoxImpl impl(1);
    const PreparedHull prepared(points);
    impl.progress = std::make_unique<ProgressRecord>(0, 1, nullptr);
    std::atomic<bool> isAborted = false;
    VolumeLimit limit;
    FaceSearch search(prepared.hull, prepared.bound, limit, 1);
    return {searchFaces(impl, search, isAborted).value(),
            searchEdges(prepared.hull, prepared.bound, isAborted, VolumeLimit())};
}

TEST(VolumeBox, OfBoxCornersIsTheBox) {
    const OrientedBox3 box = boxOf(boxCorners(2, 3, 4));
    EXPECT_EQ(volumeOf(box), 24.0);
    EXPECT_EQ(sortedExtents(box), (std::array{1.0f, 1.5f, 2.0f}));
    for (const auto& axis : box.axis) EXPECT_TRUE(isCoordinateAxis(axis));
    EXPECT_EQ(box.center, UVector3<float>(1, 1.5f, 2));
}

TEST(VolumeBox, OfARegularTetrahedronComesFromAFace) {
    const Found found = searchApart(tetrahedronCorners());
    EXPECT_FALSE(found.edges) << "it has no orthogonal triple of edges";
    EXPECT_NEAR(found.faces.volume, 16.0, 1e-9);
    EXPECT_NEAR(volumeOf(boxOf(tetrahedronCorners())), 16.0, 1e-5);
}

TEST(VolumeBox, OfTwelvePointsComesFromEdges) {
    const Found found = searchApart(twelvePoints());
    EXPECT_EQ(found.edges.value().volume, 8.0);
    EXPECT_NEAR(found.faces.volume, 152.0 / 17.0, 1e-9);
    EXPECT_EQ(volumeOf(boxOf(twelvePoints())), 8.0);
}

TEST(VolumeBox, OfAWedgeIsTheBoxAroundIt) {
    EXPECT_NEAR(volumeOf(boxOf(wedgeCorners())), 600.0, 1e-3);
}

TEST(VolumeBox, OfEqualVolumesTheFaceBoxStays) {
    const Points cube = boxCorners(1, 1, 1);
    const Found found = searchApart(cube);
    EXPECT_EQ(found.faces.volume, 1.0);
    EXPECT_EQ(found.edges.value().volume, 1.0);
    ASSERT_FALSE(static_cast<const BoxFrame&>(found.faces) ==
                 static_cast<const BoxFrame&>(*found.edges));
    EXPECT_TRUE(sameBits(boxOf(cube), toOrientedBox(hullOf(cube).points(), found.faces)));
}

TEST(VolumeBox, IsTheSameForAnyThreadCount) {
    for (const NamedPoints& set : comparisonPoints()) {
        const OrientedBox3 one = boxOf(set.points);
        for (const unsigned int threads : {2u, 3u, 4u, 8u, 13u}) {
            EXPECT_TRUE(sameBits(one, boxOf(set.points, threads))) << set.name;
        }
    }
}

TEST(VolumeBox, IsTheSameForAnyOrderOfThePoints) {
    TestRandom random(5);
    for (const NamedPoints& set : comparisonPoints()) {
        Points shuffled = set.points;
        for (std::size_t i = shuffled.size(); i > 1; --i) {
            std::swap(shuffled[i - 1],
                      shuffled[static_cast<std::size_t>(random.below(static_cast<int>(i)))]);
        }
        EXPECT_TRUE(sameBits(boxOf(set.points), boxOf(shuffled))) << set.name;
    }
}

TEST(VolumeBox, IsTheSameWithTheEdgeSearchConcurrentOrAfterwards) {
    for (const NamedPoints& set : comparisonPoints()) {
        MinBoundingBoxImpl concurrent(1);
        MinBoundingBoxImpl sequential(1, /*edgesConcurrent=*/false);
        const int n = countOf(set.points);
        EXPECT_TRUE(sameBits(searchLeastVolume(concurrent, n, set.points.data()),
                             searchLeastVolume(sequential, n, set.points.data())))
            << set.name;
    }
}

TEST(VolumeBox, TheStateBetweenCallsHoldsNoPointers) {
    const Points box = boxCorners(2, 3, 4);
    MinBoundingBoxImpl impl(1);
    searchLeastVolume(impl, countOf(box), box.data());
    EXPECT_EQ(impl.computePoints, nullptr);
    EXPECT_EQ(impl.points, nullptr);
    EXPECT_EQ(impl.hullVertices, nullptr);
    EXPECT_EQ(impl.hullEdges, nullptr);
    EXPECT_EQ(impl.pointCount, 8);
    EXPECT_EQ(impl.lastVolume, 24.0f);
    EXPECT_FALSE(impl.caliperFlag);
    EXPECT_NE(impl.progress, nullptr) << "it outlives the call";
}

TEST(VolumeBox, AVeryLargeOrSmallPartIsOneOfOrdinarySizeScaled) {
    TestRandom random(3);
    const Points part = transformed(bracketCorners(random), randomTurn(random));
    const OrientedBox3 box = boxOf(part);
    for (const int exponent : {-100, -60, -20, 20, 60, 90}) {
        const float scale = std::ldexp(1.0f, exponent);
        Points scaled = part;
        for (UPoint3<float>& p : scaled) p = {p.x * scale, p.y * scale, p.z * scale};
        OrientedBox3 expected = box;
        expected.center = box.center * scale;
        expected.extent = box.extent * scale;
        EXPECT_TRUE(sameBits(expected, boxOf(scaled))) << exponent;
    }
}

}  // namespace

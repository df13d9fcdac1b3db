#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "PreparedHull.h"
#include "ReferencePointSets.h"
#include "minbox/basearea/BaseAreaSearch.h"
#include "plain/PlainBaseAreaBox.h"
#include "tools/TestSize.h"

using namespace Tesk::minbox;

namespace {

std::optional<BoxCandidate> shipped(const Points& points, int threads, bool isHeightMode) {
    MinBoundingBoxImpl impl(static_cast<std::uint32_t>(threads));
    impl.heightMode = isHeightMode;
    impl.baseAreaMode = !isHeightMode;
    impl.pointCount = countOf(points);
    impl.progress = std::make_unique<ProgressRecord>(0, 1, nullptr);
    return searchDirections(impl, hullOf(points));
}

void compareLowest(const Points& points, const PlainHull& hull, int threads) {
    const PlainBoxRecord plain = plainLeastHeight(hull, threads);
    if (isInUsualUnit(points)) {
        EXPECT_TRUE(agree(plain, shipped(points, threads, /*isHeightMode=*/true)));
    }
    MinBoundingBox calculator(static_cast<unsigned int>(threads));
    EXPECT_TRUE(agree(plainOrientedBox(plain),
                      calculator.minBaseAreaAndHeightBox(countOf(points), points.data())));
}

/// Not for very large coordinates: their ranges, as the plain version takes them, overflow a float.
void compareLeastBase(const Points& points, const PlainHull& hull, int threads) {
    if (!isInUsualUnit(points)) return;
    const PlainBoxRecord plain = plainLeastBaseArea(hull, threads);
    EXPECT_TRUE(agree(plain, shipped(points, threads, /*isHeightMode=*/false)));
    MinBoundingBox calculator(static_cast<unsigned int>(threads));
    EXPECT_TRUE(
        agree(plainOrientedBox(plain), calculator.minBaseAreaBox(countOf(points), points.data())));
}

void compare(const Points& points, const PlainHull& hull) {
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        compareLowest(points, hull, threads);
        compareLeastBase(points, hull, threads);
    }
}

class BaseAreaReference : public OnReferenceSets {};

TEST_P(BaseAreaReference, TheLowestBoxAndTheLeastBaseAgreeForEveryThreadCount) {
    compare(m_points, PlainHull(gte::ConvexHull3(m_points.data(), count(), 3), count()));
}

INSTANTIATE_TEST_SUITE_P(Reference, BaseAreaReference,
                         testing::ValuesIn(referenceShapesAndMeshes()), nameOfSet);

TEST(BaseAreaReferenceRandom, TheLowestBoxAndTheLeastBaseAgree) {
    TestRandom random(22);
    for (int i = 0; i < (testsAreSmall() ? 40 : 300) && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const Points points = randomSolid(random);
        const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
        if (!hull.getTriangles().empty()) compare(points, PlainHull(hull, countOf(points)));
    }
}

/// A box of about that size with a small corner cut off.
Points cutBox(float size, float cut) {
    Points points = boxCorners(size, 1.3f * size, 1.7f * size);
    const UPoint3<float> corner = points.back();
    points.pop_back();
    points.emplace_back(corner.x - cut, corner.y, corner.z);
    points.emplace_back(corner.x, corner.y - 1.1f * cut, corner.z);
    points.emplace_back(corner.x, corner.y, corner.z - 0.9f * cut);
    return points;
}

TEST(BaseAreaReferenceTiny, WhatGetsLostInFloatIsLostInTheSameWay) {
    // Along the normal of a tiny triangle, extents times axes are too small for a float: a box may
    // seem smaller than it is.
    int lost = 0;
    for (float size = 1e-4f; size > 1.6e-5f; size *= 0.8f) {
        for (float cut = 0.1f * size; cut > 1e-6f * size; cut *= 0.7f) {
            SCOPED_TRACE(testing::Message() << "size " << size << ", cut " << cut);
            const Points points = cutBox(size, cut);
            const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
            const PlainHull plain(hull, countOf(points));
            compare(points, plain);
            const float least = plainLeastBaseArea(plain, 1).score;
            lost += least >= 0.0f && least < 0.5f * 1.3f * size * size ? 1 : 0;
        }
    }
    EXPECT_GT(lost, 3);
}

}  // namespace

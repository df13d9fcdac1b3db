#include <gtest/gtest.h>

#include "BaseAreaSearch.h"
#include "CompareBoxes.h"
#include "PlainBaseAreaBox.h"
#include "ReferencePointSets.h"
#include "SearchHull.h"
#include "TestSize.h"

namespace {

BoxCandidate shipped(const Points& points, int threads, bool isHeightMode) {
    MinBoundingBoxImpl impl(static_cast<std::uint32_t>(threads));
    impl.heightMode = isHeightMode;
    impl.baseAreaMode = !isHeightMode;
    impl.pointCount = countOf(points);
    const SearchHull searched(impl, countOf(points), points.data());
    impl.progress = std::make_unique<ProgressRecord>(0, 1, nullptr);
    BoxCandidate best;
    searchDirections(impl, searched, best);
    return best;
}

void compare(const Points& points, const PlainHull& hull) {
    const bool withRecords = isInUsualUnit(points);
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        MinBoundingBox calculator(static_cast<unsigned int>(threads));
        const PlainBoxRecord low = plainLeastHeight(hull, threads);
        const PlainBoxRecord small = plainLeastBaseArea(hull, threads);
        if (withRecords) {
            EXPECT_TRUE(agree(low, shipped(points, threads, /*isHeightMode=*/true)));
            EXPECT_TRUE(agree(small, shipped(points, threads, /*isHeightMode=*/false)));
        }
        EXPECT_TRUE(agree(plainOrientedBox(low),
                          calculator.minBaseAreaAndHeightBox(countOf(points), points.data())));
        EXPECT_TRUE(agree(plainOrientedBox(small),
                          calculator.minBaseAreaBox(countOf(points), points.data())));
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
    for (int i = 0; i < (testsAreSmall() ? 40 : 600) && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const Points points = randomSolid(random);
        const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
        if (!hull.getTriangles().empty()) compare(points, PlainHull(hull, countOf(points)));
    }
}

}  // namespace

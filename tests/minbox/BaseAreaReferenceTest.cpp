#include <gtest/gtest.h>

#include "BaseAreaSearch.h"
#include "CompareBoxes.h"
#include "PlainBaseAreaBox.h"
#include "ReferencePointSets.h"
#include "SearchHull.h"
#include "TestSize.h"

namespace {

class BaseAreaReference : public testing::TestWithParam<NamedPoints> {
 protected:
    BaseAreaReference()
        : m_points(GetParam().points),
          m_plain(gte::ConvexHull3(m_points.data(), countOf(m_points), 3), countOf(m_points)) {}

    BoxCandidate shipped(int threads, bool isHeightMode) const {
        MinBoundingBoxImpl impl(static_cast<std::uint32_t>(threads));
        impl.heightMode = isHeightMode;
        impl.baseAreaMode = !isHeightMode;
        impl.pointCount = countOf(m_points);
        const SearchHull searched(impl, countOf(m_points), m_points.data());
        impl.progress = std::make_unique<ProgressRecord>(0, 1, nullptr);
        BoxCandidate best;
        searchDirections(impl, searched, best);
        return best;
    }

    Points m_points;
    PlainHull m_plain;
};

TEST_P(BaseAreaReference, TheLowestBoxAgreesForEveryThreadCount) {
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        const PlainBoxRecord plain = plainLeastHeight(m_plain, threads);
        EXPECT_TRUE(agree(plain, shipped(threads, /*isHeightMode=*/true)));
        MinBoundingBox calculator(static_cast<unsigned int>(threads));
        EXPECT_TRUE(agree(plainOrientedBox(plain),
                          calculator.minBaseAreaAndHeightBox(countOf(m_points), m_points.data())));
    }
}

TEST_P(BaseAreaReference, TheLeastBaseAgreesForEveryThreadCount) {
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        const PlainBoxRecord plain = plainLeastBaseArea(m_plain, threads);
        EXPECT_TRUE(agree(plain, shipped(threads, /*isHeightMode=*/false)));
        MinBoundingBox calculator(static_cast<unsigned int>(threads));
        EXPECT_TRUE(agree(plainOrientedBox(plain),
                          calculator.minBaseAreaBox(countOf(m_points), m_points.data())));
    }
}

INSTANTIATE_TEST_SUITE_P(Reference, BaseAreaReference,
                         testing::ValuesIn(referenceSolidsAndMeshes(testsAreSmall() ? 300 : 2000)),
                         nameOfPoints);

}  // namespace

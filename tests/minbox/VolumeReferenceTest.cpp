#include <gtest/gtest.h>

#include <atomic>

#include "CompareBoxes.h"
#include "EdgeSearch.h"
#include "PlainVolumeBox.h"
#include "ReferencePointSets.h"
#include "SearchHull.h"
#include "TestSize.h"
#include "VolumeSearch.h"

namespace {

/// The plain edge search is cubic where many edges are orthogonal.
bool isEdgeSearchQuick(const PlainHull& hull) {
    return hull.edges.size() <= (testsAreSmall() ? 300u : 1000u);
}

class VolumeReference : public testing::TestWithParam<NamedPoints> {
 protected:
    VolumeReference()
        : m_points(GetParam().points),
          m_hull(m_points.data(), countOf(m_points), 3),
          m_plain(m_hull, countOf(m_points)) {}

    Points m_points;
    gte::ConvexHull3 m_hull;
    PlainHull m_plain;
};

TEST_P(VolumeReference, TheFaceSearchAgreesForEveryThreadCount) {
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        MinBoundingBoxImpl impl(static_cast<std::uint32_t>(threads));
        const SearchHull searched(impl, countOf(m_points), m_points.data());
        impl.progress = std::make_unique<ProgressRecord>(0, 1, nullptr);
        std::atomic<bool> isAborted = false;
        VolumeCandidate shipped;
        searchFaces(impl, searched, isAborted, shipped);
        EXPECT_TRUE(agree(plainFaceSearch(m_plain, threads), shipped));
    }
}

TEST_P(VolumeReference, TheEdgeSearchAgrees) {
    if (!isEdgeSearchQuick(m_plain)) GTEST_SKIP() << "too many edges for three nested loops";
    MinBoundingBoxImpl impl(1);
    const SearchHull searched(impl, countOf(m_points), m_points.data());
    VolumeCandidate shipped;
    searchEdges(impl, false, shipped);
    EXPECT_TRUE(agree(plainEdgeSearch(m_plain), shipped));
}

TEST_P(VolumeReference, TheBoxAgreesForEveryThreadCount) {
    if (!isEdgeSearchQuick(m_plain)) GTEST_SKIP() << "too many edges for three nested loops";
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        const PlainBoxRecord plain = plainLeastVolume(m_plain, threads);
        MinBoundingBox calculator(static_cast<unsigned int>(threads));
        EXPECT_TRUE(agree(plainOrientedBox(plain), calculator(countOf(m_points), m_points.data())));
    }
}

INSTANTIATE_TEST_SUITE_P(Reference, VolumeReference,
                         testing::ValuesIn(referenceSolidsAndMeshes(testsAreSmall() ? 300 : 2000)),
                         nameOfPoints);

}  // namespace

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>

#include "CompareBoxes.h"
#include "PreparedHull.h"
#include "ReferencePointSets.h"
#include "minbox/edges/EdgeSearch.h"
#include "minbox/volume/VolumeSearch.h"
#include "plain/PlainVolumeBox.h"
#include "tools/TestSize.h"

using namespace Tesk::minbox;

namespace {

/// The plain edge search is cubic where many edges are orthogonal.
bool isPlainEdgeSearchQuick(const PlainHull& hull) {
    return hull.edges.size() <= (testsAreSmall() ? 300u : 1000u);
}

std::optional<VolumeCandidate> shippedFaces(const Points& points, int threads) {
    MinBoundingBoxImpl impl(static_cast<std::uint32_t>(threads));
    const PreparedHull prepared(points);
    impl.progress = std::make_unique<ProgressRecord>(0, 1, nullptr);
    std::atomic<bool> isAborted = false;
    VolumeLimit limit;
    FaceSearch search(prepared.hull, prepared.bound, limit, impl.threadCount);
    return searchFaces(impl, search, isAborted);
}

std::optional<VolumeCandidate> shippedEdges(const Points& points) {
    const PreparedHull prepared(points);
    return searchEdges(prepared.hull, prepared.bound, false, VolumeLimit());
}

void compareFaces(const Points& points, const PlainHull& hull) {
    if (!isInUsualUnit(points)) return;
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        EXPECT_TRUE(agree(plainFaceSearch(hull, threads), shippedFaces(points, threads)));
    }
}

void compareEdgesAndBoxes(const Points& points, const PlainHull& hull) {
    const PlainBoxRecord edges = plainEdgeSearch(hull);
    if (isInUsualUnit(points)) {
        EXPECT_TRUE(agree(edges, shippedEdges(points)));
    }
    for (const int threads : kThreadCounts) {
        SCOPED_TRACE(threads);
        const PlainBoxRecord best = plainLeastVolume(plainFaceSearch(hull, threads), edges);
        MinBoundingBox calculator(static_cast<unsigned int>(threads));
        EXPECT_TRUE(agree(plainOrientedBox(best), calculator(countOf(points), points.data())));
    }
}

class VolumeReference : public OnReferenceSets {};

TEST_P(VolumeReference, FacesEdgesAndTheBoxAgreeForEveryThreadCount) {
    const PlainHull hull(gte::ConvexHull3(m_points.data(), count(), 3), count());
    compareFaces(m_points, hull);
    if (isPlainEdgeSearchQuick(hull)) compareEdgesAndBoxes(m_points, hull);
}

INSTANTIATE_TEST_SUITE_P(Reference, VolumeReference, testing::ValuesIn(referenceShapesAndMeshes()),
                         nameOfSet);

TEST(VolumeReferenceRandom, FacesEdgesAndTheBoxAgree) {
    TestRandom random(21);
    for (int i = 0; i < (testsAreSmall() ? 40 : 300) && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const Points points = randomSolid(random);
        const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
        if (hull.getTriangles().empty()) continue;
        const PlainHull plain(hull, countOf(points));
        compareFaces(points, plain);
        compareEdgesAndBoxes(points, plain);
    }
}

TEST(VolumeReferenceRandom, FacesAgreeWhereEdgesRunNearlyAlongNormals) {
    TestRandom random(35);
    for (int i = 0; i < (testsAreSmall() ? 300 : 3000) && !HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const double noise = std::pow(10.0, -random.below(12));
        const Points part = withNoise(bracketCorners(random), noise, random);
        const Points points =
            transformed(transformed(part, nearlyRightTurn(random)), nearlyRightTurn(random));
        const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
        if (!hull.getTriangles().empty()) compareFaces(points, PlainHull(hull, countOf(points)));
    }
}

TEST(VolumeReferenceRandom, LaterEdgesAreHeldAgainstTheThirdAxisNotTheFirstEdge) {
    TestRandom random(29);
    int different = 0;
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(i);
        Points points = slantedGrid(random);
        // No bit changes, but the search takes the coordinates as they are.
        for (UPoint3<float>& p : points) p = {p.x * 0x1p-8f, p.y * 0x1p-8f, p.z * 0x1p-8f};
        const PlainHull hull(gte::ConvexHull3(points.data(), countOf(points), 3), countOf(points));
        if (hull.edges.empty() || !isInUsualUnit(points)) continue;
        const PlainBoxRecord plain = plainEdgeSearch(hull);
        EXPECT_TRUE(agree(plain, shippedEdges(points)));
        const PlainBoxRecord other = plainEdgeSearch(hull, PlainThirdAxis::kFirstEdge);
        different += plain.axes != other.axes || plain.volume != other.volume ? 1 : 0;
    }
    // It is a matter of the last bits, but not of none.
    EXPECT_GT(different, 0);
}

}  // namespace

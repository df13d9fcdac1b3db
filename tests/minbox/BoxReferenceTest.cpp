#include <gtest/gtest.h>

#include "BaseAreaSearch.h"
#include "BoxTestSupport.h"
#include "EdgeSearch.h"
#include "PlainBoxes.h"
#include "SampleMeshes.h"
#include "SearchHull.h"
#include "TestSize.h"
#include "VolumeSearch.h"

namespace {

const std::vector<unsigned int> kThreadCounts = {1, 2, 3, 4, 8, 13};

bool sameFrame(const Plain::Candidate& plain, const BoxFrame& shipped) {
    bool isSame = plain.volume == shipped.volume && plain.origin == shipped.origin;
    for (std::size_t i = 0; i < 3; ++i) {
        isSame = isSame && plain.axes[i] == shipped.axes[i] &&
                 plain.squaredLengths[i] == shipped.squaredLengths[i] &&
                 plain.min[i] == shipped.ranges[i].min && plain.max[i] == shipped.ranges[i].max;
    }
    return isSame;
}

/// Compares every search on one set of points, field by field and through the exported functions.
void compare(const Points& points, bool withEdges) {
    const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
    if (hull.getTriangles().empty()) return;
    const Plain::Hull plainHull(hull);
    const Plain::Candidate edges = withEdges ? Plain::searchEdges(plainHull) : Plain::Candidate();
    if (withEdges) {
        MinBoundingBoxImpl impl(1);
        const SearchHull searched(impl, countOf(points), points.data());
        VolumeCandidate best;
        searchEdges(impl, false, best);
        if (edges.volume == -1.0) {
            EXPECT_EQ(best.volume, -1.0);
        } else {
            EXPECT_TRUE(sameFrame(edges, best)) << edges.volume << " " << best.volume;
        }
    }
    for (const unsigned int threads : kThreadCounts) {
        MinBoundingBoxImpl impl(threads);
        {
            const SearchHull searched(impl, countOf(points), points.data());
            impl.progress = std::make_unique<ProgressRecord>(0, 1, nullptr);
            std::atomic<bool> isAborted = false;
            VolumeCandidate faces;
            searchFaces(impl, searched, isAborted, faces);
            const Plain::Candidate plain = Plain::searchFaces(plainHull, static_cast<int>(threads));
            EXPECT_TRUE(sameFrame(plain, faces))
                << "faces, " << threads << " threads: " << plain.volume << " " << faces.volume;
            impl.heightMode = true;
            BoxCandidate low;
            searchDirections(impl, searched, low);
            const auto plainLow = Plain::searchHeight(plainHull, static_cast<int>(threads));
            EXPECT_TRUE(sameFrame(plainLow, low)) << "height";
            EXPECT_EQ(plainLow.height, low.height);
            EXPECT_EQ(plainLow.area, low.area);
            impl.heightMode = false;
            impl.baseAreaMode = true;
            BoxCandidate base;
            searchDirections(impl, searched, base);
            const auto plainBase = Plain::searchBaseArea(plainHull, static_cast<int>(threads));
            EXPECT_TRUE(sameFrame(plainBase, base)) << "base area";
            EXPECT_EQ(plainBase.score, base.score);
            EXPECT_EQ(plainBase.area, base.area);
        }
        MinBoundingBox calculator(threads);
        Plain::Candidate best = Plain::searchFaces(plainHull, static_cast<int>(threads));
        if (edges.volume != -1.0 && (best.volume == -1.0 || best.volume > edges.volume)) {
            best = edges;
        }
        if (withEdges) {
            const OrientedBox3 box = calculator(countOf(points), points.data());
            EXPECT_TRUE(sameBits(Plain::toBox(best), box)) << Plain::toBox(best) << "\n" << box;
        }
        if (testsAreSmall() && threads > 2) break;
    }
    MinBoundingBox calculator;
    for (const UVector3<float>& axis :
         {UVector3<float>(1, 0, 0), UVector3<float>(0, 1, 0), UVector3<float>(0, 0, 1),
          UVector3<float>(0, 3, 4), UVector3<float>(-1, 0.2f, 0.3f)}) {
        const auto plain = Plain::searchAroundAxis(hull, axis);
        if (!plain) continue;
        const OrientedBox3 box =
            calculator.minBaseAreaBoxAroundAxis(countOf(points), points.data(), axis);
        EXPECT_TRUE(sameBits(Plain::toBox(*plain), box)) << Plain::toBox(*plain) << "\n" << box;
    }
    EXPECT_TRUE(sameBits(Plain::principalAxesBox(points),
                         MinBoundingBox::generateOBB(points.data(), countOf(points))));
}

/// The plain edge search is cubic; it is left out where it would take long.
bool isPlainEdgeSearchQuick(const Points& points) {
    const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
    return hull.getHullEdges().size() <= (testsAreSmall() ? 400u : 2500u);
}

class BoxReference : public testing::TestWithParam<NamedPoints> {};

TEST_P(BoxReference, EverySearchAgreesWithThePlainVersion) {
    const Points& points = GetParam().points;
    compare(points, isPlainEdgeSearchQuick(points));
}

INSTANTIATE_TEST_SUITE_P(Reference, BoxReference, testing::ValuesIn(comparisonPoints()),
                         [](const auto& tested) { return tested.param.name; });

TEST(BoxReferenceRandom, NoisyPartsAgreeWithThePlainVersion) {
    TestRandom random(77);
    for (int i = 0; i < (testsAreSmall() ? 40 : 400); ++i) {
        SCOPED_TRACE(i);
        compare(noisyPart(random), true);
    }
}

TEST(BoxReferenceRandom, SmallGridsAgreeWithThePlainVersion) {
    TestRandom random(78);
    for (int i = 0; i < (testsAreSmall() ? 40 : 400); ++i) {
        SCOPED_TRACE(i);
        compare(pointsOnGrid(5 + random.below(40), 2 + random.below(5), random), true);
    }
}

/// A part with many edges along three orthogonal directions of whole numbers, in no way along the
/// coordinate axes: vector products are exact there, but dot products with them are rounded.
Points partInWholeFrame(TestRandom& random) {
    const auto whole = [&] { return static_cast<float>(random.below(23) - 11); };
    const float a = whole();
    const float b = whole();
    const float c = whole();
    const float d = whole();
    // The rotation of a quaternion, times its squared length.
    const UVector3<float> frame[3] = {
        {a * a + b * b - c * c - d * d, 2 * (b * c + a * d), 2 * (b * d - a * c)},
        {2 * (b * c - a * d), a * a - b * b + c * c - d * d, 2 * (c * d + a * b)},
        {2 * (b * d + a * c), 2 * (c * d - a * b), a * a - b * b - c * c + d * d}};
    Points points;
    for (int i = 0; i < 3; ++i) {
        const float size[3] = {static_cast<float>(1 + random.below(9)),
                               static_cast<float>(1 + random.below(9)),
                               static_cast<float>(1 + random.below(9))};
        for (int corner = 0; corner < 8; ++corner) {
            UVector3<float> p;
            for (int k = 0; k < 3; ++k) {
                p = p + frame[k] * ((corner >> k & 1) != 0 ? size[k] : -size[k]);
            }
            points.emplace_back(p.x, p.y, p.z);
        }
    }
    return points;
}

TEST(BoxReferenceRandom, PartsInFramesOfWholeNumbersAgreeWithThePlainVersion) {
    TestRandom random(79);
    for (int i = 0; i < (testsAreSmall() ? 60 : 400); ++i) {
        SCOPED_TRACE(i);
        compare(partInWholeFrame(random), true);
    }
}

class BoxReferenceOnSampleMeshes : public testing::TestWithParam<std::string> {};

TEST_P(BoxReferenceOnSampleMeshes, EverySearchAgreesWithThePlainVersion) {
    if (GetParam().empty()) GTEST_SKIP() << whyNoSampleMeshes();
    const std::optional<Part> part = readSampleMesh(GetParam());
    if (!part) GTEST_SKIP() << "not readable as a mesh";
    const gte::ConvexHull3 hull(part->positions.data(), static_cast<int>(part->positions.size()),
                                3);
    const std::size_t largest = testsAreSmall() ? 300 : 2000;
    if (hull.getVertices().size() > largest) GTEST_SKIP() << "a large hull";
    compare(part->positions, hull.getHullEdges().size() <= 1200);
}

std::vector<std::string> sampleFiles() {
    std::vector<std::string> files;
    for (const auto& file : sampleMeshes()) files.push_back(file.string());
    if (files.empty()) files.emplace_back();
    return files;
}

INSTANTIATE_TEST_SUITE_P(Reference, BoxReferenceOnSampleMeshes, testing::ValuesIn(sampleFiles()));

}  // namespace

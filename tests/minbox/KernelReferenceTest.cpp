#include <gtest/gtest.h>

#include "BaseAreaScores.h"
#include "CompareBoxes.h"
#include "PlainBaseAreaBox.h"
#include "ReferencePointSets.h"
#include "SearchHull.h"
#include "Silhouette.h"

namespace {

/// Compares what every face gives: the outline, all rectangles around it, and the candidates.
class KernelReference : public testing::TestWithParam<NamedPoints> {
 protected:
    void compareFaces() {
        const Points& points = GetParam().points;
        const SearchHull searched(m_impl, countOf(points), points.data());
        m_impl.pointCount = countOf(points);
        const PlainHull plain(searched.hull(), countOf(points));
        Silhouette silhouette(m_impl, searched.normals());
        Calipers calipers(m_impl);
        std::vector<int> next(plain.points.size(), 0);
        for (int face = 0; face < searched.faceCount() && !HasFailure(); ++face) {
            SCOPED_TRACE(face);
            const UVector3<double>& n = plain.normals[face];
            ASSERT_TRUE(n == searched.normals()[face]);
            std::vector<int> outline =
                plainOutline(plain, face, next, static_cast<int>(plain.points.size()));
            plainRemoveCollinear(plain.points, n, outline);
            ASSERT_EQ(outline, silhouette.along(n));
            if (outline.size() < 3) continue;
            compareRects(plain, n, outline, calipers);
            m_impl.heightMode = true;
            EXPECT_TRUE(agree(plainLowestBox(plain, n, outline), lowestBox(m_impl, n, calipers)));
            m_impl.heightMode = false;
            m_impl.baseAreaMode = true;
            EXPECT_TRUE(
                agree(plainLeastSideBox(plain, n, outline), leastBaseBox(m_impl, n, calipers)));
            m_impl.baseAreaMode = false;
        }
    }

    void compareRects(const PlainHull& plain, const UVector3<double>& n,
                      const std::vector<int>& outline, Calipers& calipers) {
        calipers.set(n, outline);
        const std::vector<PlainRect> run = plainRun(plain.points, n, outline);
        std::size_t i = 0;
        calipers.forEachRect([&](CaliperRect& rect) {
            ASSERT_LT(i, run.size());
            EXPECT_TRUE(agree(run[i], rect)) << "rectangle " << i;
            ++i;
        });
        EXPECT_EQ(i, run.size());
        EXPECT_TRUE(agree(plainMinRect(plain.points, n, outline), calipers.minRect()));
    }

    MinBoundingBoxImpl m_impl{1};
};

TEST_P(KernelReference, EveryFaceGivesThePlainOutlineRectanglesAndBoxes) {
    compareFaces();
}

INSTANTIATE_TEST_SUITE_P(Reference, KernelReference, testing::ValuesIn(referenceSolids()),
                         nameOfPoints);

}  // namespace

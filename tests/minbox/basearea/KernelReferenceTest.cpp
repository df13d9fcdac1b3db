#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "PreparedHull.h"
#include "ReferencePointSets.h"
#include "minbox/basearea/BaseAreaScores.h"
#include "plain/PlainBaseAreaBox.h"

using namespace Tesk::minbox;

namespace {

/// Compares what the outline of every face gives: all rectangles around it, and the candidates.
class KernelReference : public OnReferenceSets {
 protected:
    void compareFaces() {
        const SearchHull searched = hullOf(m_points);
        const PlainHull plain(searched.hull(), count());
        Calipers calipers(searched.points());
        std::vector<int> next(plain.points.size(), 0);
        for (int face = 0; face < searched.faceCount() && !HasFailure(); ++face) {
            SCOPED_TRACE(face);
            const UVector3<double>& n = plain.normals[face];
            ASSERT_TRUE(n == searched.normal(face));
            std::vector<int> outline =
                plainOutline(plain, face, next, static_cast<int>(plain.points.size()));
            Outline cleaned = outline;
            plainTidyOutline(plain.points, n, outline);
            removeCollinear(searched.points(), n, cleaned);
            ASSERT_EQ(outline, cleaned);
            if (outline.size() < 3) continue;
            compareRects(plain, n, outline, calipers);
            compareBoxes(plain, n, outline, calipers);
        }
    }

    void compareBoxes(const PlainHull& plain, const UVector3<double>& n,
                      const std::vector<int>& outline, Calipers& calipers) {
        const auto range = [&](const Vector& origin, const Vector& direction) {
            return calipers.points().rangeAlong(origin, direction);
        };
        EXPECT_TRUE(agree(plainLowestBox(plain, n, outline), lowestBox(calipers, range)));
        EXPECT_TRUE(agree(plainLeastSideBox(plain, n, outline), leastBaseBox(calipers, range)));
    }

    void compareRects(const PlainHull& plain, const UVector3<double>& n,
                      const std::vector<int>& outline, Calipers& calipers) {
        calipers.set(n, outline);
        const std::vector<PlainRect> run = plainRun(plain.points, n, outline);
        std::size_t i = 0;
        calipers.forEachRect([&](const CaliperRect& rect) {
            ASSERT_LT(i, run.size());
            EXPECT_TRUE(agree(run[i], rect)) << "rectangle " << i;
            ++i;
        });
        EXPECT_EQ(i, run.size());
        EXPECT_TRUE(agree(plainMinRect(plain.points, n, outline), calipers.minRect()));
    }
};

TEST_P(KernelReference, EveryFaceGivesThePlainRectanglesAndBoxes) {
    if (!isInUsualUnit(m_points)) GTEST_SKIP() << "searched in a unit of its own";
    compareFaces();
}

INSTANTIATE_TEST_SUITE_P(Reference, KernelReference, testing::ValuesIn(referenceShapesAndMeshes()),
                         nameOfSet);

}  // namespace

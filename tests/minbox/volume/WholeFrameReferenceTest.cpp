#include <gtest/gtest.h>

#include "CompareBoxes.h"
#include "PreparedHull.h"
#include "minbox/edges/EdgeSearch.h"
#include "plain/PlainVolumeBox.h"
#include "tools/TestSize.h"

using namespace Tesk::minbox;

namespace {

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

TEST(WholeFrameReference, TheEdgeSearchAgreesWhereOrthogonalityIsRounded) {
    TestRandom random(79);
    for (int i = 0; i < (testsAreSmall() ? 400 : 3000); ++i) {
        SCOPED_TRACE(i);
        const Points points = partInWholeFrame(random);
        const gte::ConvexHull3 hull(points.data(), countOf(points), 3);
        if (hull.getDimension() < 3) continue;
        const PreparedHull prepared(points);
        const auto best = searchEdges(prepared.hull, prepared.bound, false, VolumeLimit());
        ASSERT_TRUE(agree(plainEdgeSearch(PlainHull(hull, countOf(points))), best));
    }
}

}  // namespace

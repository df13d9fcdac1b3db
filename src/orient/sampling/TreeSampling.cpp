#include "orient/sampling/TreeSampling.h"

#include <cstdint>
#include <limits>
#include <utility>

#include "TeskCommon/Assert.h"
#include "orient/kernels/TurnKernels.h"
#include "orient/sampling/TriangleRectTree.h"

namespace Tesk::orient {

Rect rectOf(const TurnedTriangle& t) {
    Rect rect;
    for (const UPoint3<float>& p : {t.a, t.b, t.c}) rect.extend({p.x, p.x, p.y, p.y});
    return rect;
}

bool isUnder(const TurnedTriangle& t, const UPoint2<float>& p) {
    std::uint32_t place = 0;
    return turnKernels().rowsUnder(t.edgesAt(p.x), &p.y, 1, &place) == 1;
}

float heightOver(const TurnedTriangle& t, const UPoint2<float>& p) {
    float z = std::numeric_limits<float>::quiet_NaN();
    const ColumnPlane plane = t.planeAt(p.x);
    constexpr std::uint32_t kPlace = 0;
    if (plane.determinant != 0.0) turnKernels().heights(plane, &p.y, &kPlace, 1, &z);
    return z;
}

namespace {

std::vector<TriangleRect> rectsOf(const FlatMesh& mesh, const TurnedPart& part) {
    std::vector<TriangleRect> rects;
    rects.reserve(mesh.corners.size());
    for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
        const auto triangle = static_cast<std::int32_t>(i);
        const TurnedTriangle t(mesh, part, triangle);
        const UPoint2<float> centroid((t.a.x + t.b.x + t.c.x) / 3.0f,
                                      (t.a.y + t.b.y + t.c.y) / 3.0f);
        rects.push_back({rectOf(t), centroid, triangle});
    }
    return rects;
}

}  // namespace

SupportMeasures sampleWithTree(const FlatMesh& mesh, const std::vector<float>& areas,
                               const TurnedPart& part, const SampleGrid& grid,
                               float overhangCosine) {
    TESK_ASSERT(areas.size() == mesh.corners.size());
    SupportMeasures sums;
    if (grid.columns.size() == 0 || grid.rows.size() == 0) return sums;
    const TriangleRectTree tree(rectsOf(mesh, part));
    std::vector<ColumnHit> hits;
    UPoint2<float> p;
    const TriangleRectTree::Visitor collectHit = [&](int triangle) {
        const TurnedTriangle t(mesh, part, triangle);
        // The leaf's rectangle contains the point; the triangle's own may not.
        if (!rectOf(t).contains(p) || !isUnder(t, p)) return;
        const unsigned overhangs = t.normalZ() < -overhangCosine ? 1 : 0;
        hits.push_back({0, static_cast<std::uint32_t>(triangle) * 2 + overhangs, heightOver(t, p)});
    };
    for (std::size_t i = 0; i < grid.columns.size(); ++i) {
        for (std::size_t j = 0; j < grid.rows.size(); ++j) {
            hits.clear();
            p = {grid.columns[i], grid.rows[j]};
            tree.query(p, collectHit);
            measureColumn(hits, areas, grid.cellArea, sums);
        }
    }
    return sums;
}

}  // namespace Tesk::orient

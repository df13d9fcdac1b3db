#include "orient/sampling/ColumnHits.h"

#include <algorithm>
#include <cmath>

#include "TeskCommon/Assert.h"

namespace Tesk::orient {

void measureColumn(std::span<ColumnHit> hits, const std::vector<float>& areas, float cellArea,
                   SupportMeasures& sums) {
    TESK_ASSERT(std::ranges::all_of(hits, [&](const ColumnHit& hit) {
        return hit.sample == hits.front().sample && hit.triangle / 2 < areas.size();
    }));
    if (hits.size() < 2) return;
    sums.projectedArea += cellArea;
    const auto isUpright = [](const ColumnHit& hit) { return !std::isfinite(hit.z); };
    const auto finiteEnd = std::remove_if(hits.begin(), hits.end(), isUpright);
    std::sort(hits.begin(), finiteEnd, [](const ColumnHit& a, const ColumnHit& b) {
        return a.z != b.z ? a.z < b.z : a.triangle < b.triangle;
    });
    auto end = std::unique(hits.begin(), finiteEnd,
                           [](const ColumnHit& a, const ColumnHit& b) { return a.z == b.z; });
    if ((end - hits.begin()) % 2 != 0) end = hits.begin();
    float length = 0.0f;
    float below = 0.0f;
    for (auto hit = hits.begin(); hit != end; hit += 2) {
        if ((hit->triangle & 1) != 0) {
            length += std::fabs(hit->z - below);
            sums.overhangArea += areas[hit->triangle / 2];
        }
        below = (hit + 1)->z;
    }
    sums.supportVolume += length * cellArea;
}

}  // namespace Tesk::orient

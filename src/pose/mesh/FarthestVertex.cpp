#include "pose/mesh/FarthestVertex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tesk::pose {

std::int32_t farthestAlong(const PoseMesh& mesh, const UVector3<float>& direction,
                           std::int32_t guess) {
    const auto reachOf = [&](std::int32_t v) { return mesh.placed(v).Dot(direction); };
    std::int32_t best = guess;
    float reach = best < 0 ? -std::numeric_limits<float>::infinity() : reachOf(best);
    for (std::size_t block = 0; block < mesh.vertexBounds.size(); ++block) {
        const std::size_t group = block / kGroupOfBlocks;
        if (block % kGroupOfBlocks == 0 &&
            !(mesh.vertexGroupBounds[group].mostAlong(direction) > reach)) {
            block += kGroupOfBlocks - 1;
            continue;
        }
        if (!(mesh.vertexBounds[block].mostAlong(direction) > reach)) continue;
        const std::size_t first = block * kBlockSize;
        const std::size_t end = std::min(first + kBlockSize, mesh.flat.keptVertices);
        for (std::size_t v = first; v < end; ++v) {
            const float value = reachOf(static_cast<std::int32_t>(v));
            if (!(value > reach) || !std::isfinite(value)) continue;
            reach = value;
            best = static_cast<std::int32_t>(v);
        }
    }
    return best;
}

}  // namespace Tesk::pose

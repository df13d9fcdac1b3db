#include "pose/mesh/FarthestVertex.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tesk::pose {

namespace {

/// The group of blocks whose bound reaches farthest; 0 if none has a bound.
std::size_t farthestGroup(const PoseMesh& mesh, const UVector3<float>& direction) {
    float most = -std::numeric_limits<float>::infinity();
    std::size_t farthest = 0;
    for (std::size_t group = 0; group < mesh.vertexGroupBounds.size(); ++group) {
        const float bound = mesh.vertexGroupBounds[group].mostAlong(direction);
        if (!(bound > most)) continue;
        most = bound;
        farthest = group;
    }
    return farthest;
}

}  // namespace

std::int32_t farthestAlong(const PoseMesh& mesh, const UVector3<float>& direction,
                           std::int32_t guess) {
    const auto reachOf = [&](std::int32_t v) { return mesh.placed(v).Dot(direction); };
    std::int32_t best = guess;
    float reach = best < 0 ? -std::numeric_limits<float>::infinity() : reachOf(best);
    const auto visit = [&](std::size_t first, std::size_t count) {
        const std::size_t end = std::min(first + count, mesh.flat.keptVertices);
        for (std::size_t v = first; v < end; ++v) {
            const float value = reachOf(static_cast<std::int32_t>(v));
            if (!(value > reach) || !std::isfinite(value)) continue;
            reach = value;
            best = static_cast<std::int32_t>(v);
        }
    };
    // The most promising group first: what it reaches rules out nearly all others.
    constexpr std::size_t kGroupSize = kBlockSize * kGroupOfBlocks;
    visit(farthestGroup(mesh, direction) * kGroupSize, kGroupSize);
    for (std::size_t block = 0; block < mesh.vertexBounds.size(); ++block) {
        const std::size_t group = block / kGroupOfBlocks;
        if (block % kGroupOfBlocks == 0 &&
            !(mesh.vertexGroupBounds[group].mostAlong(direction) > reach)) {
            block += kGroupOfBlocks - 1;
            continue;
        }
        if (!(mesh.vertexBounds[block].mostAlong(direction) > reach)) continue;
        visit(block * kBlockSize, kBlockSize);
    }
    return best;
}

}  // namespace Tesk::pose

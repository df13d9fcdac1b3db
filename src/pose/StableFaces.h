#pragma once

#include <cstdint>
#include <vector>

#include "pose/PoseMesh.h"

namespace Tesk::pose {

/// The kept vertex that lies farthest along a direction, as placed; −1 where there is none. Blocks
/// that cannot reach as far as one found are passed over.
///
/// @param guess  a vertex that may be it, or −1
std::int32_t farthestAlong(const PoseMesh& mesh, const UVector3<float>& direction,
                           std::int32_t guess);

/// Directions that point up where the part lies on a face of its convex hull that is under its
/// centroid, the largest face first: on no other can it stand. The hull is that of the farthest
/// vertices in 512 directions: good enough to set a part down from, even where it has a million
/// vertices. Facets within 1° are one face.
std::vector<UVector3<float>> upOnStableFaces(const PoseMesh& mesh, std::size_t most);

}  // namespace Tesk::pose

#pragma once

#include <cstdint>

#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// The kept vertex that lies farthest along a direction, as placed; −1 if there is none. Of equally
/// far vertices, any may be returned: which one does not depend on the number of threads.
///
/// Blocks of vertices that cannot reach farther than the best so far are skipped.
///
/// @param guess  a vertex that may be it, or −1
std::int32_t farthestAlong(const PoseMesh& mesh, const UVector3<float>& direction,
                           std::int32_t guess);

}  // namespace Tesk::pose

#pragma once

#include <vector>

#include "minbox/box/Vector.h"

namespace Tesk::minbox {

/// Orders indices into directions along a Z-order curve through the unit vectors, so that most
/// directions are close to the one before. A search then finds its last results and the processor's
/// caches useful. Directions in the same cell of the curve are ordered by index.
///
/// Source: G. M. Morton, "A computer oriented geodetic data base and a new technique in file
/// sequencing", IBM 1966.
void orderByDirection(const std::vector<Vector>& directions, std::vector<int>& indices);

}  // namespace Tesk::minbox

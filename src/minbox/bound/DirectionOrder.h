#pragma once

#include <vector>

#include "minbox/box/Vector.h"

namespace Tesk::minbox {

/// Orders indices into directions so that most directions are close to the one before, which keeps
/// what a search has just found and loaded useful: along a Z-shaped curve through the unit vectors.
/// Directions at one place of the curve are ordered by index.
///
/// Source: G. M. Morton, "A computer oriented geodetic data base and a new technique in file
/// sequencing", IBM 1966.
void orderByDirection(const std::vector<Vector>& directions, std::vector<int>& indices);

}  // namespace Tesk::minbox

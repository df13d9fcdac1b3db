#pragma once

#include <cstddef>
#include <vector>

#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// Up directions of the poses in which the part lies on a face of its convex hull that is under its
/// centroid, the largest face first. The part can stand on no other face.
///
/// The hull is that of the farthest vertices in 512 directions: good enough for setting the part
/// down, and quick even for a million vertices. Facets within 1° of each other are one face.
///
/// @param most  the largest number of directions to return
std::vector<UVector3<float>> upOnStableFaces(const PoseMesh& mesh, std::size_t most);

}  // namespace Tesk::pose

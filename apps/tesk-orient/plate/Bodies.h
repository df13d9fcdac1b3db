#pragma once

#include <vector>

#include "TeskPartFiles/PartFiles.h"

namespace App {

/// The bodies of a mesh in the order of their first triangles: triangles that are connected through
/// vertices. A body inside another one stays with it; its box must lie within the other's, and its
/// first vertex within the other's surface.
///
/// Throws InputFailure where there are so many that they cannot be meant as objects: more than
/// 1,000, or more than 20,000 with those inside others.
///
/// @param mesh  welded; at least one triangle
std::vector<Tesk::PartMesh> bodiesOf(const Tesk::PartMesh& mesh);

}  // namespace App

#pragma once

#include <vector>

#include "TeskDataBasic/UVector3.h"
#include "TeskMeshData/MeshKernel.h"

namespace Tesk::orient {

/// The build directions worth evaluating, at most 58 unit vectors, no two in one cell of
/// directionKey(). In this order, the first to reach a cell staying: 18 fixed directions (always
/// all of them); the 10 most frequent triangle normals, in the mesh's own frame, each with its
/// opposite; the 10 most frequent normals of randomly drawn planes through placed vertices, each
/// with its opposite. Among equally frequent ones the one found earlier goes first.
///
/// Refreshes the mesh's triangle normals. Draws from nextRandom() on the calling thread, two
/// numbers per plane and 1 to 30 planes per triangle, fewer the more triangles there are.
std::vector<UVector3<float>> initOrients(MeshKernel* mesh);

}  // namespace Tesk::orient

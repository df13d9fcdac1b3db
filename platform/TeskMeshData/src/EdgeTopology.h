#pragma once

#include "TeskMeshData/MeshKernel.h"

namespace Tesk::mesh {

/// Finds the triangles at each edge. Returns the edge counts and, if `setNeighbours`, sets every
/// triangle's neighbours. Linear in the triangle count, in parallel; needs about 40 bytes per
/// triangle while it runs.
TopologyCounts buildEdgeTopology(UMesh<float>& mesh, bool setNeighbours);

}  // namespace Tesk::mesh

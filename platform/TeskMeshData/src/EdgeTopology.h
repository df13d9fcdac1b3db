#pragma once

#include "TeskMeshData/MeshKernel.h"

namespace Tesk::mesh {

/// Finds which triangles share an edge. Sets every triangle's neighbours when `setNeighbours`, and
/// returns the edge counts. Linear in the triangle count, in parallel; needs about 40 bytes per
/// triangle meanwhile.
TopologyCounts buildEdgeTopology(UMesh<float>& mesh, bool setNeighbours);

}  // namespace Tesk::mesh

#pragma once

#include "TeskDataBasic/UMatrix4.h"
#include "TeskMeshData/MeshKernel.h"
#include "TeskThreads/Team.h"
#include "orient/mesh/FlatMesh.h"

namespace Tesk::orient {

/// Copies a mesh and measures its placed box. Reads the mesh only; O(vertices + triangles).
FlatMesh flatten(Tesk::Team& team, const UMesh<float>& mesh, const UMatrix4<float>& placement);

/// The same on the calling thread alone.
FlatMesh flatten(const UMesh<float>& mesh, const UMatrix4<float>& placement);

}  // namespace Tesk::orient

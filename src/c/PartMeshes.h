#pragma once

#include <vector>

#include "TeskMeshData/MeshKernel.h"
#include "TeskPartFiles/PartFiles.h"

namespace Tesk::c {

/// A mesh as the file library holds it, with its positions transformed.
Tesk::PartMesh partMeshOf(const MeshKernel& kernel, const UMatrix4<float>& placement);

std::vector<UPoint3<float>> positionsOf(const Tesk::PartMesh& mesh);

}  // namespace Tesk::c

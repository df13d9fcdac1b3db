#pragma once

#include <functional>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskMeshData/MeshKernel.h"

namespace Tesk::placement {

/// Finds the rotation about the centre of the mesh's box that aligns the least-volume box of the
/// part with the coordinate axes: OrientOptimizer::calculateOrients_minBoundingBox(). Writes the
/// matrix last.
///
/// @param mesh     not null
/// @param layFlat  true: longest side along X, shortest along Z; false, standing: longest along Z,
///                 shortest along X; the middle one along Y in both cases
void placeByMinBox(MeshKernel* mesh, UMatrix4<float>& matrix,
                   const std::function<void(int)>& progress, bool layFlat);

}  // namespace Tesk::placement

#pragma once

#include <functional>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskMeshData/MeshKernel.h"

/// The rotation about the centre of the mesh's box that aligns the least-volume box of the part
/// with the coordinate axes: OrientOptimizer::calculateOrients_minBoundingBox().
///
/// @param layFlat  true: the longest side along X, the shortest along Z; false, standing: the
///                 longest along Z, the shortest along X; the middle one along Y either way
void placeByMinBox(MeshKernel* mesh, UMatrix4<float>& matrix,
                   const std::function<void(int)>& progress, bool layFlat);

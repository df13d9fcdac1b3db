#pragma once

#include "MinBoundingBox.h"
#include "TeskMeshData/MeshKernel.h"

/// The rotation about the centre of a mesh's box that turns an oriented box of the mesh so that its
/// sides lie along the coordinate axes: lying flat with the longest along X and the shortest along
/// Z, standing the other way round.
UMatrix4<float> plainPlacement(MeshKernel& mesh, const OrientedBox3& box, bool layFlat);

/// The points that the box of a mesh is taken around.
std::vector<UPoint3<float>> plainPlacedPoints(const MeshKernel& mesh);

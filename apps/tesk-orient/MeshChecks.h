#pragma once

#include <array>

#include "LengthUnit.h"
#include "TeskMeshData/MeshKernel.h"
#include "TriangleMesh.h"
#include "Warning.h"

namespace App {

/// x, y and z extent of a mesh.
std::array<double, 3> sizeOf(const TriangleMesh& mesh);

/// How many triangles have no area: corners that coincide or lie on a line, exactly.
std::int64_t countDegenerate(const TriangleMesh& mesh);

/// Six times the volume that a closed mesh encloses, negative where its triangles face inward;
/// measured from the first vertex, in double.
double signedVolumeSixfold(const TriangleMesh& mesh);

/// What may make a result doubtful: open and non-manifold edges, inconsistent winding, a surface
/// that is inside out, triangles without area, a size that hints at another unit.
///
/// @param mesh      welded, in millimetres; not empty
/// @param topology  its edge counts
/// @param unit      what the file's numbers were taken to be
Warnings checkMesh(const TriangleMesh& mesh, const TopologyCounts& topology,
                   const LengthUnit& unit);

}  // namespace App

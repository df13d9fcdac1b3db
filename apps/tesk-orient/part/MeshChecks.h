#pragma once

#include <array>
#include <optional>

#include "TeskMeshData/MeshKernel.h"
#include "TeskMeshData/SurfaceMeasures.h"
#include "TriangleMesh.h"
#include "Warning.h"
#include "options/LengthUnit.h"

namespace App {

/// x, y and z extent of a mesh.
std::array<double, 3> sizeOf(const TriangleMesh& mesh);

/// What a mesh is for: support minds holes and triangles that face the wrong way, a box does not.
enum class Purpose { kSupport, kBox };

/// The volume that a mesh encloses, of the mesh's unit; nothing where it has open or non-manifold
/// edges or inconsistent winding.
std::optional<double> enclosedVolume(const Tesk::SurfaceMeasures& measures,
                                     const TopologyCounts& topology);

/// What may make a result doubtful: open and non-manifold edges, inconsistent winding, a surface
/// that is inside out, triangles without area, a size that hints at another unit.
///
/// @param mesh      welded, in millimetres; not empty
/// @param topology  its edge counts
/// @param measures  its surface's
/// @param unit      what the file's numbers were taken to be
/// @param purpose   says which consequences the warnings name
Warnings checkMesh(const TriangleMesh& mesh, const TopologyCounts& topology,
                   const Tesk::SurfaceMeasures& measures, const LengthUnit& unit, Purpose purpose);

}  // namespace App

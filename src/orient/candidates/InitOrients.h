#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "TeskDataBasic/UVector3.h"
#include "TeskMeshData/MeshKernel.h"

namespace Tesk::orient {

/// Unit normals, component by component, with one entry per triangle.
struct TriangleNormals {
    std::span<const float> x, y, z;
};

/// The build directions worth evaluating: 18 to 58 unit vectors, in this order:
/// - 18 fixed directions,
/// - the 10 most frequent triangle normals, in the mesh's own frame, each with its opposite,
/// - the 10 most frequent normals of randomly drawn planes through placed vertices, each with its
///   opposite.
///
/// Of equally frequent directions, the one found earlier comes first. A direction in the same cell
/// of directionKey() as an earlier one is left out.
///
/// Refreshes the mesh's triangle normals. Draws random numbers on the calling thread as
/// nextRandom() does: two for each plane, and 1 to 30 planes for each triangle, fewer in larger
/// meshes.
///
/// @param mesh  not null
std::vector<UVector3<float>> initOrients(MeshKernel* mesh);

/// The same with given triangle normals and a random sequence of its own. Only reads the mesh.
///
/// @param normals  in the frame of the directions
/// @param seed     of the sequence; nextRandom() is not advanced
std::vector<UVector3<float>> initOrients(const MeshKernel& mesh, const TriangleNormals& normals,
                                         std::uint32_t seed);

/// The 18 fixed directions. The last is +Z.
std::span<const UVector3<float>> fixedOrients();

}  // namespace Tesk::orient

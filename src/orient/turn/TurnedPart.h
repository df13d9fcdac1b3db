#pragma once

#include <array>
#include <span>

#include "TeskDataBasic/UBox3.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"
#include "orient/kernels/TurnKernels.h"
#include "orient/mesh/FlatMesh.h"

namespace Tesk::orient {

/// The mesh as a candidate build direction turns it, with the box of its kept vertices.
struct TurnedPart {
    std::array<TurnedCoordinate, 3> coordinates;
    UBox3<float> box;
    /// Whether all coordinates of all vertices are finite.
    bool isFinite = false;

    /// A vertex of the mesh, as UPoint3 times UMatrix4 turns it.
    UPoint3<float> point(const FlatMesh& mesh, std::int32_t vertex) const {
        const UPoint3<float> p = mesh.point(vertex);
        return {turned(p, coordinates[0]), turned(p, coordinates[1]), turned(p, coordinates[2])};
    }

 private:
    static float turned(const UPoint3<float>& p, const TurnedCoordinate& c) {
        return p.x * c.fromX + p.y * c.fromY + p.z * c.fromZ + c.shift;
    }
};

/// The box of the mesh's kept vertices taken through a matrix.
UBox3<float> boxThrough(const FlatMesh& mesh, const UMatrix4<float>& matrix);

/// How many candidates go through the mesh together: each of its arrays is then read once for all.
constexpr std::size_t kGroupSize = 4;

/// Turns the placed mesh about the centre of its placed box so that each direction points along +Z,
/// and lifts it to `baseHeight` if that is above −1.
///
/// @param directions  at most kGroupSize, of any length above zero
/// @param parts       one per direction
void turnParts(const FlatMesh& mesh, std::span<const UVector3<float>> directions, float baseHeight,
               std::span<TurnedPart> parts);

}  // namespace Tesk::orient

#pragma once

#include <array>
#include <span>

#include "TeskDataBasic/UBox3.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"
#include "orient/kernels/TurnKernels.h"
#include "orient/mesh/FlatMesh.h"

namespace Tesk::orient {

/// The mesh turned for one candidate build direction, with the box of its kept vertices.
struct TurnedPart {
    std::array<TurnedCoordinate, 3> coordinates;
    UBox3<float> box;
    /// False if a coordinate of any vertex might not be finite.
    bool isFinite = false;

    /// A turned vertex. Gives the same bits as UPoint3 times UMatrix4.
    UPoint3<float> point(const FlatMesh& mesh, std::int32_t vertex) const {
        const UPoint3<float> p = mesh.point(vertex);
        return {turned(p, coordinates[0]), turned(p, coordinates[1]), turned(p, coordinates[2])};
    }

 private:
    static float turned(const UPoint3<float>& p, const TurnedCoordinate& c) {
        return p.x * c.fromX + p.y * c.fromY + p.z * c.fromZ + c.shift;
    }
};

/// The box of the mesh's kept vertices, transformed by a matrix.
UBox3<float> boxThrough(const FlatMesh& mesh, const UMatrix4<float>& matrix);

/// The number of candidates that are turned together, in one pass over the mesh's arrays.
constexpr std::size_t kGroupSize = 4;

/// Turns the placed mesh about the centre of its placed box so that each direction points along +Z,
/// and lifts it to `baseHeight` if that is above −1.
///
/// @param directions  at most kGroupSize, of any length above zero
/// @param parts       as many as directions
void turnParts(const FlatMesh& mesh, std::span<const UVector3<float>> directions, float baseHeight,
               std::span<TurnedPart> parts);

/// Sets the mesh down on z = 0 as each matrix places it. Gives the same bits as turnParts() for a
/// mesh with that placement, the direction +Z and the base height 0.
///
/// @param placements  at most kGroupSize, in place of the mesh's own
/// @param parts       one per placement
void standParts(const FlatMesh& mesh, std::span<const UMatrix4<float>> placements,
                std::span<TurnedPart> parts);

}  // namespace Tesk::orient

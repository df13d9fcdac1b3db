#pragma once

#include "pose/geometry/PoseTurn.h"
#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// The extents of a part in a pose, mm.
struct PoseSize {
    double alongX = 0.0;
    double alongY = 0.0;
    double height = 0.0;
};

PoseSize sizeOf(const PoseMesh& mesh, const PoseTurn& turn);

/// Turns a pose on about Z so that the part's walls, facets within 6° of upright, lie along X and
/// Y: their normals' angles modulo 90° are counted by area, and the walls of the fullest degree
/// decide if they are at least a tenth of the surface. Without such walls the least rectangle of
/// the footprint decides.
///
/// The long side then lies along X. Of the turns that achieve this, the one with the smallest total
/// rotation is used; no turn if the pose already satisfies it to within 1e-4 rad or, in area, 1 %.
PoseTurn withWallsAlongAxes(const PoseMesh& mesh, const PoseTurn& turn);

/// The same by the least rectangle, whatever the walls.
PoseTurn withLeastRectangle(const PoseMesh& mesh, const PoseTurn& turn);

}  // namespace Tesk::pose

#pragma once

#include <vector>

#include "TeskDataBasic/UVector3.h"
#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// What a plate can touch if it is tilted by at most an angle from the plane perpendicular to `up`.
struct NearPlate {
    /// The placed vertices that such a plate can touch: few, even of a sphere of a million points,
    /// but all of a flat face. The faces of their convex hull whose outward normal is within the
    /// angle of straight down are those of the hull of all vertices.
    std::vector<UPoint3<float>> points;
    double bottom = 0.0;    ///< the least height along `up`
    double rounding = 0.0;  ///< more than heights are rounded by
    /// An upper bound of the contact area on any such plate, counting what lies within kPlateGap of
    /// it. The computation stops at `roomWanted`.
    double room = 0.0;
};

/// Finds these vertices. Let q be the lowest one, m a normal of such a plate, pointing down, and p
/// a vertex within a gap of it: m·(q − p) <= gap. With m = −cos(a)·up + sin(a)·h, h horizontal, a
/// <= t, and q − p = −depth·up + lateral, that is depth <= tan(a)·(−h·lateral) + gap / cos(a),
/// which is at most tan(t)·|lateral| + gap / cos(t). The corners of a hull face with such a normal
/// are among those without a gap, and so is the extreme vertex along it: the hull of the points has
/// no other faces there.
///
/// Cost: two passes over the vertices.
///
/// @param roomWanted  stop once `room` reaches this; 0: do not compute it
NearPlate nearPlate(const PoseMesh& mesh, const UVector3<double>& up, double withinDeg,
                    double roomWanted);

/// Leaves out points of flat faces, and above them, that do not matter to those faces of the hull.
void thin(const UVector3<double>& up, NearPlate& near);

}  // namespace Tesk::pose

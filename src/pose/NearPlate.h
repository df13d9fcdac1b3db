#pragma once

#include <vector>

#include "TeskDataBasic/UVector3.h"
#include "pose/PoseMesh.h"

namespace Tesk::pose {

/// What a plate can touch that is tilted by up to an angle from the plane that `up` stands on.
struct NearPlate {
    /// The placed vertices that a plate can touch; of a sphere of a million points few. The faces
    /// of their convex hull whose outward normal is within the angle of straight down are those of
    /// the hull of all vertices.
    std::vector<UPoint3<float>> points;
    /// At least the area of the contact that any such plate can have with what lies within
    /// kPlateGap of it, or something that was enough.
    double room = 0.0;
};

/// Finds them. Let q be the lowest vertex, m a normal of such a plate, pointing down, and p a
/// vertex within a gap of it: m·(q − p) <= gap. With m = −cos(a)·up + sin(a)·h, h horizontal, a <=
/// t, and q − p = −depth·up + lateral, that is depth <= tan(a)·(−h·lateral) + gap / cos(a), which
/// is at most tan(t)·|lateral| + gap / cos(t). The corners of a hull face with such a normal are
/// among those without a gap, and so is the extreme vertex along it: the hull of the points has no
/// other faces there.
///
/// Cost: two passes over the vertices.
///
/// @param roomWanted  what is enough for a room; 0: it does not matter and stays 0
NearPlate nearPlate(const PoseMesh& mesh, const UVector3<double>& up, double withinDeg,
                    double roomWanted);

}  // namespace Tesk::pose

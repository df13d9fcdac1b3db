#pragma once

#include "OrientOptimizer.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TriangleMesh.h"

namespace App {

/// The centre of a mesh's box.
UPoint3<float> centerOf(const TriangleMesh& mesh);

/// The transform of a ranked orientation, for row vectors (p' = p · M): the turn about the centre
/// of the part's box and, where `baseHeight` is above −1, the move of its lowest point to that
/// height.
UMatrix4<float> poseOf(const OptimizeOrient::OptOrientation& orientation, const TriangleMesh& mesh,
                       const UPoint3<float>& center, float baseHeight);

/// The transform of a build pose: its rotation about the centre of the part's box, and the move of
/// its lowest point to z = 0.
UMatrix4<float> poseOf(const UMatrix4<float>& rotation, const TriangleMesh& mesh);

/// A transform followed by the move along x and y that brings the centre of the part's box back to
/// where it was.
UMatrix4<float> inPlace(const UMatrix4<float>& m, const TriangleMesh& mesh);

/// A transform followed by the move that brings the part's lowest point to a height.
UMatrix4<float> setDown(const TriangleMesh& mesh, const UMatrix4<float>& m, float height);

/// The direction of the part that the orientation turns up.
UVector3<float> upOf(const OptimizeOrient::OptOrientation& orientation);

/// Positions taken through m.
TriangleMesh moved(TriangleMesh mesh, const UMatrix4<float>& m);

}  // namespace App

#pragma once

#include <optional>

#include "TeskDataBasic/UVector3.h"
#include "pose/mesh/PoseMesh.h"
#include "pose/resting/NearPlate.h"

namespace Tesk::pose {

/// Poses are set down on a face of the convex hull within this, degrees.
constexpr double kSnapDeg = 3.0;

/// A face of the hull within this of the plate lies on it, degrees.
constexpr double kFlatDeg = 0.1;

/// A face of the convex hull that a pose can be set down on.
struct RestingFace {
    UVector3<double> up;  ///< the direction that points up then: against the face's normal
    double area = 0.0;    ///< of all facets of its plane together
};

/// The largest face of the placed mesh's convex hull whose outward normal is within an angle of
/// straight down, as `up` points up; none if there is no such face. Facets of the hull within
/// 0.1° of one another are one face: rounding alone makes them differ.
///
/// @param near  nearPlate() for that direction and angle
std::optional<RestingFace> largestFaceNear(const NearPlate& near, const UVector3<double>& up,
                                           double withinDeg);

/// The same from the mesh.
std::optional<RestingFace> restingFaceNear(const PoseMesh& mesh, const UVector3<double>& up,
                                           double withinDeg);

}  // namespace Tesk::pose

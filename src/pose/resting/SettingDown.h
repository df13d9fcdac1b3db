#pragma once

#include "BuildPose.h"
#include "pose/geometry/PoseTurn.h"
#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// A pose before it is turned about Z: set down on a face of the hull, with what is known of it
/// without sampling.
struct PoseOnFace {
    UVector3<double> up;           ///< unit vector
    bool isSetDown = false;        ///< setDown() has looked for a face
    bool isOnFace = false;         ///< a face was found
    bool isKeptOff = false;        ///< by a rule of the goal
    bool isLittleContact = false;  ///< less than the goal asks for
    bool stands = false;

    bool isAllowed() const { return !isKeptOff && !isLittleContact; }

    /// Whether both are the same to within 0.1°.
    bool isAlike(const PoseOnFace& other) const;
};

/// What a direction is set down on.
enum class SetDownTo {
    kFaceToStandOn,  ///< the largest face within reach, if the contact near it can be large enough
    kAnyFace,        ///< the largest face within reach
    kPresentFace,    ///< the face that the part lies on already
};

/// Sets a direction down on a face; without such a face, the direction is kept. judge() determines
/// whether the pose stands.
PoseOnFace setDown(const PoseMesh& mesh, const OptimizeOrient::PoseGoal& goal,
                   const UVector3<double>& direction, SetDownTo target);

/// Fills isLittleContact and stands. Does nothing for a pose that is kept off or was not set down.
void judge(const PoseMesh& mesh, const OptimizeOrient::PoseGoal& goal, PoseOnFace& pose);

/// The turn that brings a direction up: none if it points up already, to within 0.03°, which
/// over 100 mm is a quarter of a layer.
PoseTurn uprightTurn(const UVector3<double>& up);

}  // namespace Tesk::pose

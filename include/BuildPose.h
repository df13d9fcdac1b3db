#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"
#include "TeskMeshData/MeshKernel.h"
#include "TeskSDKTriangleOrientExport.h"

/// How a part should lie on the build plate: an answer, whereas OrientOptimizer gives a ranking.
///
/// A pose is a rotation R that follows the mesh's placement M: p' = p · M · R for row vectors. It
/// is measured as it will lie, with its lowest point on the plate, z = 0. Lengths are in the mesh's
/// unit, taken as millimetres.
///
/// The cost of a pose is in millimetres of filament of 1.75 mm. Its constants were fitted to slices
/// of printed parts by one slicer with one profile, at 55°. Another slicer puts down other amounts:
/// docs/poses.md says how to fit the constants to yours.
///
/// Nothing here considers strength across layers, the look of surfaces, or accuracy of holes.
namespace OptimizeOrient {

/// A direction of the part that must not face down: neither onto the plate nor onto support.
struct KeepOff {
    /// The face's outward normal in the frame of the placed part; any length above zero.
    UVector3<float> direction;
    /// Forbids poses in which the direction points within this angle of straight down, degrees.
    /// Negative: the goal's overhang angle, so that a face with this normal never needs support.
    float angleDeg = -1.0f;
};

/// Costs and limits for choosing a pose.
struct PoseGoal {
    /// Degrees from the build plate: a surface is an overhang if the z of its unit normal is below
    /// −cos(overhangAngleDeg). With the default, faces at 45° are overhangs.
    float overhangAngleDeg = 55.0f;
    float supportVolumeCost = 0.15f;  ///< mm of filament per mm³ of support
    float overhangAreaCost = 0.5f;    ///< mm of filament per mm² of overhanging surface
    float heightCost = 15.0f;         ///< mm of filament per mm of height

    /// The build volume's size along x, y and z in mm; 0: no limit along this axis. A footprint may
    /// be turned by 90° to fit.
    UVector3<float> buildVolume;
    std::vector<KeepOff> keepOff;
    float leastContactArea = 0.0f;  ///< mm² of the part that must touch the plate

    /// The defaults: filament and time in balance.
    static PoseGoal balanced() { return {}; }

    /// Support weighs more: a millimetre of height costs 8 mm of filament.
    static PoseGoal leastSupport() {
        PoseGoal goal;
        goal.heightCost = 8.0f;
        return goal;
    }
};

/// What a pose is like.
struct PoseMeasures {
    float height = 0.0f;      ///< z extent, mm
    float footprintX = 0.0f;  ///< extent along x, mm
    float footprintY = 0.0f;  ///< extent along y, mm
    /// Volume between overhanging surfaces and what lies below them, mm³: sampled in columns under
    /// the part, as OrientOptimizer does.
    float supportVolume = 0.0f;
    /// Area of the overhanging facets whose centroid lies more than 0.2 mm above the plate, mm².
    float overhangArea = 0.0f;
    /// The share of overhangArea whose support rests on the part, not on the plate, mm²: facets
    /// with the mesh directly below their centroid.
    float overhangAreaOnPart = 0.0f;
    /// Area seen from below of the downward facets that lie within 0.2 mm of the plate, mm².
    float contactArea = 0.0f;
    /// The number of separate patches of contact.
    std::int32_t contactIslands = 0;
    /// The tilt at which the part falls over, degrees: the angle at the centroid between straight
    /// down and the nearest edge of the contact's convex hull. Negative if the centroid is not over
    /// the contact's hull, −90 if the contact spans no area.
    float tiltMarginDeg = -90.0f;
    /// Whether a face of the part's convex hull lies on the plate.
    bool liesFlat = false;
    /// Whether the pose stands by itself: it lies flat, bears 5° of tilt, and its contact is at
    /// least 0.03 times the solid's volume to the power of 2/3.
    bool stands = false;
};

/// The cost of a pose by its parts, mm of filament.
struct PoseCost {
    float supportVolume = 0.0f;
    float overhangArea = 0.0f;
    float height = 0.0f;

    /// What the support is predicted to take.
    float supportFilament() const { return supportVolume + overhangArea; }
    float total() const { return supportVolume + overhangArea + height; }
};

struct BuildPose {
    /// Turns the placed part; exactly the identity if the part may stay as it lies. No
    /// translation.
    UMatrix4<float> rotation;
    PoseMeasures measures;
    PoseCost cost;
};

/// How many poses were passed over, each counted for the first rule that it broke.
struct PassedOver {
    std::int32_t keptOff = 0;        ///< a KeepOff face would lie on the plate or on support
    std::int32_t tooLarge = 0;       ///< not within the build volume
    std::int32_t littleContact = 0;  ///< below leastContactArea
    std::int32_t cannotStand = 0;    ///< counted only if another pose stands
};

struct BuildPoses {
    /// At most 12, in the order of their costs, but for the first: of the poses that cost up to 3 %
    /// more than the least, it is the one with the least support. The pose that leaves the part as
    /// it lies goes before others that cost less by under 1 %, and stays first if it is. Empty if
    /// no pose is allowed, or none can be measured.
    std::vector<BuildPose> poses;
    /// The part without any turn, measured alike, whether or not it is allowed.
    BuildPose asItLies;
    /// Poses are listed, but none of them stands.
    bool noneStands = false;
    PassedOver passedOver;
    /// Of the poses that do not fit the build volume, footprint and height of the one that comes
    /// nearest; 0 if there is none.
    UVector3<float> nearestMisfit;
};

/// Finds the poses of least cost in which a placed mesh can be built.
///
/// All candidate directions of OrientOptimizer are measured at the goal's angle. The best are set
/// down on the largest face of the convex hull within 3° (facets of one plane count as one face);
/// those that end up alike become one. Each is turned about Z so that its walls lie along X and Y,
/// or, if it has no walls, its footprint in its least rectangle, with the long side along X; it
/// keeps its angle if that will do. They are measured once more, as measurePose() does, and ranked
/// by cost. If none of them stands, the faces of the hull under the centroid are tried. Poses that
/// do not stand are listed only if no pose stands.
///
/// A mesh that has been turned by the best pose and is given again stays as it is, unless another
/// pose costs at least 1 % less. Printed parts stay, or what is found then costs less by under 1 %.
/// The candidates depend on the frame of the mesh, however: of a soup of random triangles, which
/// has hundreds of directions, a pose that costs up to 5 % less may be found.
///
/// The same mesh always gives the same poses, whatever the host has drawn from its random numbers,
/// which are not advanced. A mesh without triangles, or one whose size is not finite, has no poses.
///
/// @param mesh      only read
/// @param goal      costs and limits
/// @param progress  empty, or called on the calling thread with whole percentages that never fall:
///                  3, 10, 10..90 while candidates are measured, 90..100. It ends the computation
///                  by throwing Tesk::AbortException, or anything else; it is not called again
///                  then.
///
/// Throws what the callback threw and std::bad_alloc; a Tesk::AbortException of the callback from
/// inside a parallel stage leaves the call as a new Tesk::AbortException("Aborting...").
///
/// Runs on as many OpenMP threads as the caller's setting allows; the result does not depend on how
/// many. Cost: one and a half to two times that of OrientOptimizer::calculateOrients() for most
/// meshes, more if several poses have many overhangs above fine surfaces.
TESK_ORIENT_API BuildPoses findBuildPoses(const MeshKernel& mesh, const PoseGoal& goal,
                                          const std::function<void(int)>& progress = {});

/// Measures one pose of a placed mesh.
///
/// @param mesh      only read
/// @param goal      its overhang angle and costs; its limits are ignored
/// @param rotation  a rotation, without translation
TESK_ORIENT_API BuildPose measurePose(const MeshKernel& mesh, const PoseGoal& goal,
                                      const UMatrix4<float>& rotation);

}  // namespace OptimizeOrient

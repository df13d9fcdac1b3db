#include "pose/resting/SettingDown.h"

#include <algorithm>
#include <numbers>

#include "orient/turn/TurnedPart.h"
#include "pose/facets/FacetMeasures.h"
#include "pose/resting/HullFaceSnap.h"
#include "pose/resting/NearPlate.h"
#include "pose/resting/Standing.h"
#include "pose/spin/PoseLimits.h"

namespace Tesk::pose {

bool PoseOnFace::isAlike(const PoseOnFace& other) const {
    constexpr double kAlikeRad = kFlatDeg * std::numbers::pi / 180.0;
    return (up * other.up).GetLength() < kAlikeRad && (up | other.up) > 0.0;
}

PoseTurn uprightTurn(const UVector3<double>& up) {
    constexpr double kUprightRad = 5e-4;
    const bool isUpright = up.z > 0.0 && up.x * up.x + up.y * up.y < kUprightRad * kUprightRad;
    return isUpright ? PoseTurn() : PoseTurn::ontoUp(up);
}

namespace {

/// The contact that a solid needs to stand on, or a little less: what is sought is tilted by a few
/// degrees, and its contact then looks smaller.
double leastContactFor(double volume) {
    double low = 0.0;
    double high = volume + 1.0;
    for (int step = 0; step < 40; ++step) {
        const double middle = (low + high) * 0.5;
        (isContactEnough(middle, volume) ? high : low) = middle;
    }
    return low * 0.99;
}

/// The face that a direction is set down on.
std::optional<RestingFace> faceFor(const PoseMesh& mesh, const UVector3<double>& up,
                                   const NearPlate& near, SetDownTo target) {
    // A dome of so many points has only tiny faces there, and their hull takes long.
    constexpr std::size_t kDome = 4096;
    if (near.room < leastContactFor(mesh.volume) && near.points.size() > kDome) return std::nullopt;
    if (target != SetDownTo::kPresentFace) return largestFaceNear(near, up, kSnapDeg);
    return restingFaceNear(mesh, up, kFlatDeg);
}

}  // namespace

PoseOnFace setDown(const PoseMesh& mesh, const OptimizeOrient::PoseGoal& goal,
                   const UVector3<double>& direction, SetDownTo target) {
    PoseOnFace pose{.up = direction.GetNormal()};
    const auto leastContact = static_cast<double>(goal.leastContactArea);
    const double wanted = std::max(leastContact, leastContactFor(mesh.volume));
    NearPlate near = nearPlate(mesh, pose.up, kSnapDeg, wanted);
    pose.isSetDown = target == SetDownTo::kAnyFace || near.room >= wanted;
    std::optional<RestingFace> face;
    if (pose.isSetDown) {
        thin(pose.up, near);
        face = faceFor(mesh, pose.up, near, target);
    }
    if (face) pose.up = face->up;
    pose.isOnFace = face.has_value();
    pose.isKeptOff = isKeptOff(goal, uprightTurn(pose.up));
    pose.isLittleContact = near.room < leastContact;
    return pose;
}

void judge(const PoseMesh& mesh, const OptimizeOrient::PoseGoal& goal, PoseOnFace& pose) {
    if (!pose.isSetDown || pose.isKeptOff) return;
    const UMatrix4<float> turn = uprightTurn(pose.up).matrix();
    const UMatrix4<float> placement = mesh.flat.placement * turn;
    orient::TurnedPart part;
    orient::standParts(mesh.flat, {&placement, 1}, {&part, 1});
    const Contact contact = contactOf(mesh, part, upOf(turn));
    pose.isLittleContact = contact.area < goal.leastContactArea;
    pose.stands =
        isStanding(pose.isOnFace, tiltMarginOf(mesh, part, contact), contact.area, mesh.volume);
}

}  // namespace Tesk::pose

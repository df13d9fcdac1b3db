#include "plate/PresentPose.h"

#include <algorithm>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"
#include "plate/Polar.h"

namespace App {

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::KeepOff;
using OptimizeOrient::PoseGoal;

UVector3<double> turned(const UVector3<double>& v, const UMatrix4<double>& m) {
    const UPoint3<double> end = UPoint3<double>(v.x, v.y, v.z) * linearOf(m);
    return {end.x, end.y, end.z};
}

bool fits(const PoseGoal& goal, float alongX, float alongY, float height) {
    // What rounding may add to a size: a part made to measure fits.
    constexpr float kRounding = 1.0f + 1e-6f;
    const UVector3<float>& room = goal.buildVolume;
    return (!(room.x > 0.0f) || alongX <= room.x * kRounding) &&
           (!(room.y > 0.0f) || alongY <= room.y * kRounding) &&
           (!(room.z > 0.0f) || height <= room.z * kRounding);
}

bool isKeptOff(const PoseGoal& goal, const KeepOff& rule, const UMatrix4<double>& rotation) {
    constexpr double kSlack = 1e-6;
    const float angleDeg = rule.angleDeg < 0.0f ? goal.overhangAngleDeg : rule.angleDeg;
    const double angleRad = static_cast<double>(angleDeg) * std::numbers::pi / 180.0;
    const UVector3<double> normal = rule.direction.As<double>().GetNormal();
    return -turned(normal, rotation).z >= Tesk::cosine(angleRad) - kSlack;
}

}  // namespace

bool isAllowed(const PoseGoal& goal, const UMatrix4<double>& rotation,
               const OptimizeOrient::PoseMeasures& measures) {
    return fits(goal, measures.footprintX, measures.footprintY, measures.height) &&
           std::none_of(goal.keepOff.begin(), goal.keepOff.end(),
                        [&](const KeepOff& rule) { return isKeptOff(goal, rule, rotation); });
}

Spins spinsOf(const PoseGoal& goal, const BuildPose& pose) {
    const OptimizeOrient::PoseMeasures& m = pose.measures;
    return fits(goal, m.footprintY, m.footprintX, m.height) ? Spins::kQuarters : Spins::kHalves;
}

PoseGoal goalFor(PoseGoal goal, const UMatrix4<double>& stretch) {
    if (stretch == UMatrix4<double>()) return goal;
    // A normal of the stretched surface; the stretch is symmetric.
    const UMatrix4<double> normals = inverseOf(stretch);
    for (KeepOff& rule : goal.keepOff) {
        rule.direction = turned(rule.direction.As<double>(), normals).GetNormal().As<float>();
    }
    return goal;
}

BuildPose PresentPoses::measured(const UMatrix4<double>& rotation) {
    const UMatrix4<float> single = toFloat(linearOf(rotation));
    const auto known = std::find_if(m_known.begin(), m_known.end(),
                                    [&](const BuildPose& pose) { return pose.rotation == single; });
    if (known != m_known.end()) return *known;
    m_known.push_back(measurePose(m_kernel, m_goal, single));
    return m_known.back();
}

bool PresentPoses::mayStay(const UMatrix4<double>& rotation) {
    constexpr float kStays = 0.99f;
    const BuildPose pose = measured(rotation);
    return pose.measures.stands && pose.cost.total() * kStays <= m_bestCost &&
           isAllowed(m_goal, rotation, pose.measures);
}

}  // namespace App

#include "pose/spin/PoseLimits.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"

namespace Tesk::pose {

namespace {

using OptimizeOrient::KeepOff;
using OptimizeOrient::PoseGoal;

/// What rounding may add to a size: a part made to measure fits.
constexpr double kRounding = 1.0 + 1e-6;

double ratioOf(double size, float room) {
    return room > 0.0f ? size / static_cast<double>(room) : 0.0;
}

double excessAlong(const PoseGoal& goal, double x, double y, double z) {
    return std::max({ratioOf(x, goal.buildVolume.x), ratioOf(y, goal.buildVolume.y),
                     ratioOf(z, goal.buildVolume.z)});
}

}  // namespace

bool isKeptOff(const PoseGoal& goal, const PoseTurn& turn) {
    return std::any_of(goal.keepOff.begin(), goal.keepOff.end(), [&](const KeepOff& rule) {
        const float angleDeg = rule.angleDeg < 0.0f ? goal.overhangAngleDeg : rule.angleDeg;
        const double angleRad = static_cast<double>(angleDeg) * std::numbers::pi / 180.0;
        const UVector3<double> normal = rule.direction.As<double>().GetNormal();
        // A face that the pose sets down exactly is straight down but for rounding.
        constexpr double kSlack = 1e-6;
        return -turn.turned(normal).z >= Tesk::cosine(angleRad) - kSlack && !normal.IsZeroLength();
    });
}

Fit fitOf(const PoseGoal& goal, const PoseSize& size) {
    if (excessAlong(goal, size.alongX, size.alongY, size.height) <= kRounding) {
        return Fit::kAsItIs;
    }
    return excessAlong(goal, size.alongY, size.alongX, size.height) <= kRounding ? Fit::kTurnedBy90
                                                                                 : Fit::kNot;
}

double excessOf(const PoseGoal& goal, const PoseSize& size) {
    return std::min(excessAlong(goal, size.alongX, size.alongY, size.height),
                    excessAlong(goal, size.alongY, size.alongX, size.height));
}

}  // namespace Tesk::pose

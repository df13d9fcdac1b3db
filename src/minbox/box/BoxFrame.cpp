#include "minbox/box/BoxFrame.h"

#include <cmath>

namespace Tesk::minbox {
namespace {

/// Two axes count as orthogonal if their dot product, divided by their lengths, is at most this.
constexpr double kMaxCosine = 1e-9;

}  // namespace

double volumeOf(const BoxFrame& frame) {
    const auto& [r0, r1, r2] = frame.ranges;
    return (r1.length() / frame.squaredLengths[1]) * r0.length() *
           (r2.length() / frame.squaredLengths[2]);
}

bool hasOrthogonalAxes(const BoxFrame& frame) {
    for (const double squaredLength : frame.squaredLengths) {
        if (!(squaredLength > 0.0) || !std::isfinite(squaredLength)) return false;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t j = (i + 1) % 3;
        const double dot = frame.axes[i] | frame.axes[j];
        const double bound = kMaxCosine * kMaxCosine * frame.squaredLengths[i];
        if (!(dot * dot <= bound * frame.squaredLengths[j])) return false;
    }
    return true;
}

}  // namespace Tesk::minbox

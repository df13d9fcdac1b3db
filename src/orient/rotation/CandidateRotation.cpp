#include "orient/rotation/CandidateRotation.h"

#include "TeskDataBasic/Transcendental.h"

namespace Tesk::orient {

float candidateAngle(UVector3<float> direction) {
    UVector3<float> up(0.0f, 0.0f, 1.0f);
    direction.Normalize();
    up.Normalize();
    return static_cast<float>(Tesk::arcCosine(static_cast<double>(direction | up)));
}

UVector3<float> candidateAxis(const UVector3<float>& direction) {
    // Straight down, the vector product vanishes; any horizontal axis will do.
    if (direction == UVector3<float>(0.0f, 0.0f, -1.0f)) return {0.0f, 1.0f, 0.0f};
    return direction * UVector3<float>(0.0f, 0.0f, 1.0f);
}

}  // namespace Tesk::orient

#include "threemf/ThreeMfTransform.h"

namespace Tesk::files {

ThreeMfPoint mapped(const ThreeMfPoint& p, const PartTransform& transform) {
    const auto& m = transform.m;
    return {p.x * m[0] + p.y * m[3] + p.z * m[6] + m[9],
            p.x * m[1] + p.y * m[4] + p.z * m[7] + m[10],
            p.x * m[2] + p.y * m[5] + p.z * m[8] + m[11]};
}

PartTransform composed(const PartTransform& first, const PartTransform& next) {
    PartTransform both;
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t col = 0; col < 3; ++col) {
            double sum = row == 3 ? next.m[9 + col] : 0.0;
            for (std::size_t k = 0; k < 3; ++k) sum += first.m[row * 3 + k] * next.m[k * 3 + col];
            both.m[row * 3 + col] = sum;
        }
    }
    return both;
}

PartTransform ofScaled(const PartTransform& transform, double factor) {
    PartTransform scaled = transform;
    for (std::size_t k = 0; k < 9; ++k) scaled.m[k] *= factor;
    return scaled;
}

bool isMirroring(const PartTransform& transform) {
    const auto& m = transform.m;
    return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
               m[2] * (m[3] * m[7] - m[4] * m[6]) <
           0.0;
}

}  // namespace Tesk::files

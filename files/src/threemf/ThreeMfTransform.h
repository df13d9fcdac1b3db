#pragma once

#include "TeskPartFiles/Plates.h"

namespace Tesk::files {

struct ThreeMfPoint {
    double x;
    double y;
    double z;
};

ThreeMfPoint mapped(const ThreeMfPoint& p, const PartTransform& transform);

/// One transform, then another.
PartTransform composed(const PartTransform& first, const PartTransform& next);

/// The transform of points that are multiplied by a factor first; 1 leaves it as it is.
PartTransform ofScaled(const PartTransform& transform, double factor);

bool isMirroring(const PartTransform& transform);

}  // namespace Tesk::files

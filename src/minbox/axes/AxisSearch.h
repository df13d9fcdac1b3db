#pragma once

#include "OrientedBox3.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"
#include "minbox/call/MinBoundingBoxImpl.h"

namespace Tesk::minbox {

/// The box of least cross-section around an axis: MinBoundingBox::minBaseAreaBoxAroundAxis().
OrientedBox3 searchAroundAxis(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points,
                              const UVector3<float>& axis);

}  // namespace Tesk::minbox

#pragma once

#include <vector>

#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"

namespace Tesk::pose {

/// Leaves out of many points those that lie above the inside of a flat face, or within it: a fine
/// mesh has thousands of vertices there, and none of them matters to what the convex hull is like
/// from below. The face lies in the plane that `up` stands on, to within rounding. Few points are
/// left alone.
///
/// @param bottom  where the plane crosses `up`; no point lies below it but for rounding
void thinFlat(const UVector3<double>& up, double bottom, double rounding,
              std::vector<UPoint3<float>>& points);

/// The same for a flat face that is tilted from that plane: the largest that the hull of some of
/// the points has.
void thinTilted(const UVector3<double>& up, double rounding, std::vector<UPoint3<float>>& points);

}  // namespace Tesk::pose

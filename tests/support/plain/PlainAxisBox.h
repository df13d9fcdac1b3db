#pragma once

#include <optional>
#include <vector>

#include "plain/PlainBoxRecord.h"

/// The box around an axis, in the two ways that it is looked for. `hull` is the hull's own, `plain`
/// what it gives.

/// Whether the axis gives a frame across it: not along Z (but for (0, 0, 1)), not zero, not NaN.
bool plainHasAxisPlane(const UVector3<float>& axis);

/// The hull vertices on the outline of the projection in single precision, counter-clockwise about
/// the axis; fewer than three where the projection has no area.
std::vector<int> plainAxisPolygon(const gte::ConvexHull3& hull, const UVector3<float>& axis);

/// The box over the rectangle that the kernel finds around that outline; nothing where there is no
/// outline, or where the box misses a vertex, is not square or inside out.
std::optional<PlainBoxRecord> plainSingleAxisBox(const gte::ConvexHull3& hull,
                                                 const PlainHull& plain,
                                                 const UVector3<float>& axis);

/// The box over the least rectangle around the projection in double precision, its corners merged;
/// its ranges are those of all vertices.
PlainBoxRecord plainDoubleAxisBox(const PlainHull& plain, const UVector3<float>& axis);

/// The first where it is there and no more than a rounding larger than the second.
PlainBoxRecord plainAxisBox(const gte::ConvexHull3& hull, const UVector3<float>& axis);

#pragma once

#include <optional>
#include <vector>

#include "plain/PlainBoxRecord.h"

/// The box around an axis, found in two ways. `hull` is the library's hull, `plain` is made from
/// it.

/// Whether there is a frame across the axis: not if it is along Z (except (0, 0, 1)), zero or NaN.
bool plainHasAxisPlane(const UVector3<float>& axis);

/// The hull vertices on the outline of the projection in single precision, counter-clockwise about
/// the axis; fewer than three if the projection has no area.
std::vector<int> plainAxisPolygon(const gte::ConvexHull3& hull, const UVector3<float>& axis);

/// The box over the rectangle that the calipers find around that outline; std::nullopt if there is
/// no outline, or if the box misses a vertex, is not orthogonal or has a negative range.
std::optional<PlainBoxRecord> plainSingleAxisBox(const gte::ConvexHull3& hull,
                                                 const PlainHull& plain,
                                                 const UVector3<float>& axis);

/// The box over the least rectangle around the projection in double precision, after near corners
/// have been merged; its ranges are those of all vertices.
PlainBoxRecord plainDoubleAxisBox(const PlainHull& plain, const UVector3<float>& axis);

/// The first box, if there is one and it exceeds the second by no more than rounding; else the
/// second.
PlainBoxRecord plainAxisBox(const gte::ConvexHull3& hull, const UVector3<float>& axis);

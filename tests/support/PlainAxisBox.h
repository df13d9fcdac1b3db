#pragma once

#include <vector>

#include "PlainBoxRecord.h"

/// The hull vertices on the outline of the projection along an axis, counter-clockwise about it;
/// fewer than three where the projection has no area.
std::vector<int> plainAxisPolygon(const gte::ConvexHull3& hull, const UVector3<float>& axis);

/// The box of least cross-section with its third axis along the given one, over an outline of at
/// least three vertices; unset where the frame is not sound.
PlainBoxRecord plainAxisBox(const PlainHull& hull, const UVector3<float>& axis,
                            const std::vector<int>& polygon);

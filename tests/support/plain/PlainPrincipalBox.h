#pragma once

#include <vector>

#include "MinBoundingBox.h"

/// The box along the principal axes of points, all finite and at least one, with full side lengths.
OrientedBox3 plainPrincipalBox(const std::vector<UPoint3<float>>& points);

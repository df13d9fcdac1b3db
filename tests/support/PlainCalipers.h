#pragma once

#include <vector>

#include "PlainBoxes.h"

/// Steps of the plain rectangle search that the plain box searches share.
namespace Plain {

Vec normalOf(const Hull& hull, const std::array<int, 3>& triangle);

/// The first rectangle and all that turning gives, until a bottom vertex comes up again.
std::vector<Rect> allRects(const Hull& hull, const Vec& n, const std::vector<int>& outline);

}  // namespace Plain

#pragma once

#include <functional>

#include "minbox/box/BoxCandidate.h"
#include "minbox/outline/Calipers.h"

namespace Tesk::minbox {

/// Which field of a BoxCandidate a search minimises.
enum class BaseAreaKey { kScore, kHeight };

/// Finds the hull's range along a direction, from an origin.
using RangeAlong = std::function<Range(const Vector& origin, const Vector& direction)>;

/// The box along the calipers' direction over the rectangle of least area, with its height along
/// the direction.
BoxCandidate lowestBox(Calipers& calipers, const RangeAlong& rangeAlong);

/// The box along the calipers' direction over the rectangle that gives the smallest side, with that
/// side's area as its score.
BoxCandidate leastBaseBox(Calipers& calipers, const RangeAlong& rangeAlong);

/// Forms from a candidate's ranges what follows from them: volume, area, and its key.
void measureAgain(const SearchConstants& constants, BaseAreaKey key, BoxCandidate& box);

}  // namespace Tesk::minbox

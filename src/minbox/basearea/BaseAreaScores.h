#pragma once

#include <functional>

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/outline/Calipers.h"

/// Finds the hull's range along a direction, from an origin.
using RangeAlong = std::function<Range(const Vector& origin, const Vector& direction)>;

/// The box along a direction, which the calipers look along, over the rectangle of least area, with
/// its height along the direction.
BoxCandidate lowestBox(const MinBoundingBoxImpl& impl, const Vector& direction, Calipers& calipers,
                       const RangeAlong& rangeAlong);

/// The box along a direction over the rectangle that gives the smallest side face, with that
/// face's area as its score.
BoxCandidate leastBaseBox(const MinBoundingBoxImpl& impl, const Vector& direction,
                          Calipers& calipers, const RangeAlong& rangeAlong);

/// What follows from a candidate's ranges: volume, area, and the height or the score of the mode.
void measureAgain(const MinBoundingBoxImpl& impl, BoxCandidate& box);

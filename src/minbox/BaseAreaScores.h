#pragma once

#include <vector>

#include "BoxCandidate.h"
#include "CaliperRect.h"
#include "MinBoundingBoxImpl.h"

/// The box along a direction over the rectangle of least area, with its height along the direction.
BoxCandidate lowestBox(const MinBoundingBoxImpl& impl, const Vector& direction,
                       const Outline& outline, std::vector<bool>& visited);

/// The box along a direction over the rectangle that gives the smallest side face, with that
/// face's area as its score.
BoxCandidate leastBaseBox(const MinBoundingBoxImpl& impl, const Vector& direction,
                          const Outline& outline, std::vector<bool>& visited);

/// What follows from a candidate's ranges: volume, area, and the height or the score of the mode.
void measureAgain(const MinBoundingBoxImpl& impl, BoxCandidate& box);

#pragma once

#include <vector>

#include "minbox/box/BoxCandidate.h"

/// Brings numbers of directions into an order in which most look about the same way as the one
/// before: what a search has found and loaded for one serves the next. Along a Z-shaped curve
/// through the unit vectors; of those in one place of it, lower numbers come first.
///
/// Source: G. M. Morton, "A computer oriented geodetic data base and a new technique in file
/// sequencing", IBM 1966.
void orderByDirection(const std::vector<Vector>& directions, std::vector<int>& numbers);

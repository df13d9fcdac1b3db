#pragma once

#include <atomic>

#include "BoxBound.h"
#include "BoxCandidate.h"
#include "MinBoundingBoxImpl.h"
#include "SearchHull.h"
#include "VolumeLimit.h"

/// The boxes parallel to three mutually orthogonal hull edges. `best` stays unset where there are
/// none below the limit. Reports no progress; returns early, `best` then without meaning, once
/// `isAborted` is set.
///
/// Edges are orthogonal where the dot product of their vectors, in double, is exactly zero. Triples
/// i < j < k of edges are taken in lexicographic order; the first of equal volumes wins. Once a
/// triple with i is found, the further ones of that i are tested against the vector product of
/// its k and j in place of edge i: the same direction but for rounding.
void searchEdges(const MinBoundingBoxImpl& impl, const SearchHull& hull, const BoxBound& bound,
                 const std::atomic<bool>& isAborted, const VolumeLimit& limit,
                 VolumeCandidate& best);

#pragma once

#include <atomic>

#include "minbox/bound/BoxBound.h"
#include "minbox/bound/VolumeLimit.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/SearchHull.h"

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

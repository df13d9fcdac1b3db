#pragma once

#include <atomic>
#include <optional>

#include "minbox/bound/BoxBound.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/hull/SearchHull.h"

namespace Tesk::minbox {

/// The best box parallel to three mutually orthogonal hull edges; nothing if none is below the
/// limit. The hull has faces. Reports no progress; returns early, with a meaningless result, once
/// `isAborted` is set.
///
/// Edges are orthogonal if the dot product of their vectors, in double, is exactly zero. Triples
/// i < j < k of edges are taken in lexicographic order; the first of equal volumes wins. Once a
/// triple with i is found, the later ones of that i are tested against the vector product of its k
/// and j in place of edge i: the same direction but for rounding.
std::optional<VolumeCandidate> searchEdges(const SearchHull& hull, const BoxBound& bound,
                                           const std::atomic<bool>& isAborted,
                                           const VolumeLimit& limit);

}  // namespace Tesk::minbox

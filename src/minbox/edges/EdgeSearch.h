#pragma once

#include <atomic>
#include <optional>

#include "minbox/bound/BoxBound.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/hull/SearchHull.h"

namespace Tesk::minbox {

/// The least-volume box parallel to three mutually orthogonal hull edges; std::nullopt if no box is
/// smaller than the limit. Reports no progress. Once `isAborted` is set it returns early, and the
/// result is meaningless.
///
/// Edges are orthogonal if the dot product of their vectors, in double, is exactly zero. Triples
/// i < j < k of edges are visited in lexicographic order, and of equal volumes the first wins. Once
/// a triple (i, j, k) is found, the vector product of edges k and j takes the place of edge i for
/// the rest of that i. It has the same direction except for rounding.
///
/// @param hull  has faces
std::optional<VolumeCandidate> searchEdges(const SearchHull& hull, const BoxBound& bound,
                                           const std::atomic<bool>& isAborted,
                                           const VolumeLimit& limit);

}  // namespace Tesk::minbox

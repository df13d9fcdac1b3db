#pragma once

#include "PlainCandidates.h"
#include "PlainRanking.h"

/// The whole job in the plainest way: candidates, areas, every candidate evaluated in turn, and
/// the ranking. `seed` is what the library's random numbers were seeded with before its call.
PlainRanking plainCalculate(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                            std::uint32_t seed, PlainSearch search);

/// Whether a configuration asks for support to be measured.
bool plainWantsSupport(const OptimizeOrient::Configure& config);

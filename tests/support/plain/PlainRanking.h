#pragma once

#include <vector>

#include "OrientOptimizer.h"
#include "plain/PlainCandidates.h"
#include "plain/PlainEvaluation.h"

/// What a call returns.
struct PlainRanking {
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> all;           ///< of every candidate
    std::vector<OptimizeOrient::OptOrientation> orientations;  ///< at most 12 of them
};

/// One score list scaled to 0..1.
std::vector<float> plainNormalised(const std::vector<float>& values);

/// Best direction and thinned list from the measures of all candidates.
PlainRanking plainRanking(const std::vector<UVector3<float>>& candidates,
                          const std::vector<PlainScores>& measured,
                          const OptimizeOrient::Configure& config);

/// The whole call in the plainest way: candidates, areas, one candidate after another, ranking.
///
/// @param seed  the seed of the library's random numbers before its call
PlainRanking plainCalculate(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                            std::uint32_t seed, PlainSearch search);

/// Whether a configuration asks for support to be measured.
bool plainWantsSupport(const OptimizeOrient::Configure& config);

#pragma once

#include <vector>

#include "OrientOptimizer.h"
#include "plain/PlainCandidates.h"
#include "plain/PlainEvaluation.h"

/// What a call returns.
struct PlainRanking {
    UVector3<float> axis;
    float angle = 0.0f;
    std::vector<OptimizeOrient::OptOrientation> orientations;
};

/// One score list scaled to 0..1.
std::vector<float> plainNormalised(const std::vector<float>& values);

/// Best direction and thinned list from the measures of all candidates.
PlainRanking plainRanking(const std::vector<UVector3<float>>& candidates,
                          const std::vector<PlainScores>& measured,
                          const OptimizeOrient::Configure& config);

/// The whole job in the plainest way: candidates, areas, every candidate evaluated in turn, and
/// the ranking. `seed` is what the library's random numbers were seeded with before its call.
PlainRanking plainCalculate(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                            std::uint32_t seed, PlainSearch search);

/// Whether a configuration asks for support to be measured.
bool plainWantsSupport(const OptimizeOrient::Configure& config);

#pragma once

#include <vector>

#include "OrientOptimizer.h"
#include "PlainEvaluation.h"

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

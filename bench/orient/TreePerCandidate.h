#pragma once

#include <vector>

#include "OrientOptimizer.h"

/// The measures of one candidate.
struct BaselineMeasures {
    float height = 0.0f;
    float supportVolume = 0.0f;
    float overhangArea = 0.0f;
    float projectedArea = 0.0f;
    float boxVolume = 0.0f;
};

/// The evaluation as one writes it down first, as a baseline: per candidate a tree over all
/// triangles, and every look at a triangle reads the mesh and transforms its corners anew. Gives
/// the bits of evaluateOrient() with support switched on.
BaselineMeasures evaluateWithTreePerCandidate(const std::vector<float>& areas, MeshKernel& mesh,
                                              const UVector3<float>& direction,
                                              const OptimizeOrient::Configure& config);

#pragma once

#include <functional>
#include <vector>

#include "OrientOptimizer.h"
#include "orient/ranking/RankOrients.h"

namespace Tesk::orient {

/// Does what OrientOptimizer::calculateOrients() does; with Records::kAll, `orientations` receives
/// a record of every candidate, in the same order and with the same values.
void rankDirections(MeshKernel* mesh, const OptimizeOrient::Configure& config, Records records,
                    UVector3<float>& axis, float& angle,
                    std::vector<OptimizeOrient::OptOrientation>* orientations,
                    const std::function<void(int)>& progress);

}  // namespace Tesk::orient

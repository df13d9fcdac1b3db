#include "OrientOptimizer.h"

#include "orient/RankDirections.h"

void OrientOptimizer::calculateOrients(MeshKernel* mesh, OptimizeOrient::Configure config,
                                       UVector3<float>& axis, float& angle,
                                       std::vector<OptimizeOrient::OptOrientation>* orientations,
                                       std::function<void(int)> progress) {
    Tesk::orient::rankDirections(mesh, config, Tesk::orient::Records::kSpread, axis, angle,
                                 orientations, progress);
}

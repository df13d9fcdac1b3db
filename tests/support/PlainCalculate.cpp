#include "PlainCalculate.h"

bool plainWantsSupport(const OptimizeOrient::Configure& config) {
    return config.supportAreaWeight != 0 || config.supportVolumeWeight != 0 ||
           config.computeSupport != 0;
}

PlainRanking plainCalculate(MeshKernel& mesh, const OptimizeOrient::Configure& config,
                            std::uint32_t seed, PlainSearch search) {
    PlainRandom random(seed);
    const std::vector<UVector3<float>> candidates = plainCandidates(mesh, random);
    const std::vector<float> areas = plainAreas(mesh);
    std::vector<PlainScores> measured;
    for (const UVector3<float>& direction : candidates) {
        measured.push_back(plainEvaluation(areas, mesh, direction, config.overhangAngle,
                                           plainWantsSupport(config), config.baseHeight, search));
    }
    return plainRanking(candidates, measured, config);
}

#include "pose/candidates/PoseCandidates.h"

#include <algorithm>
#include <cmath>

#include "orient/CandidateLoop.h"
#include "orient/candidates/InitOrients.h"
#include "orient/sampling/Overhang.h"
#include "orient/turn/TurnedPart.h"
#include "pose/facets/FacetMeasures.h"
#include "pose/measures/PoseMeasuring.h"
#include "pose/mesh/FarthestVertex.h"
#include "pose/work/PoseWork.h"

namespace Tesk::pose {

namespace {

using OptimizeOrient::PoseGoal;
using Directions = std::vector<UVector3<float>>;
using Candidates = std::vector<PoseCandidate>;

/// Samples all directions.
orient::ScoreLists evaluated(const PoseMesh& mesh, const PoseGoal& goal,
                             const Directions& directions,
                             const std::function<void(int)>& progress) {
    OptimizeOrient::Configure config;
    config.overhangAngle = goal.overhangAngleDeg;
    config.supportVolumeWeight = 1;
    config.baseHeight = 0.0f;
    orient::ScoreLists scores(directions.size());
    orient::CandidateLoop(mesh.flat, mesh.areas, directions, config, progress, scores).run();
    return scores;
}

void sortByCost(Candidates& candidates) {
    std::stable_sort(
        candidates.begin(), candidates.end(),
        [](const PoseCandidate& a, const PoseCandidate& b) { return a.cost < b.cost; });
}

/// The part with a direction up on z = 0, of which only the heights are set.
orient::TurnedPart onlyHeights(const PoseMesh& mesh, const UVector3<float>& up) {
    const UMatrix4<float>& m = mesh.flat.placement;
    const auto along = [&](int row) {
        return m.at(row, 0) * up.x + m.at(row, 1) * up.y + m.at(row, 2) * up.z;
    };
    orient::TurnedPart part;
    part.coordinates[2] = {along(0), along(1), along(2), along(3)};
    const std::int32_t lowest = farthestAlong(mesh, up * -1.0f, -1);
    if (lowest >= 0) part.coordinates[2].shift -= part.point(mesh.flat, lowest).z;
    return part;
}

/// Adds the overhangs' cost to candidates from first up to, and not with, end.
void addOverhangs(const PoseMesh& mesh, const PoseGoal& goal, std::size_t first, std::size_t end,
                  Candidates& candidates) {
    const float cosine = orient::overhangCosineOf(goal.overhangAngleDeg);
    const std::function<void(int)> none;
    PoseWork(none, 0, 0).run(end - first, [&](std::size_t i) {
        PoseCandidate& candidate = candidates[first + i];
        const UVector3<float> up = candidate.up.GetNormal();
        const float area = overhangAreaOf(mesh, onlyHeights(mesh, up), up, cosine);
        candidate.cost = costOf(goal, candidate.supportVolume, area, candidate.height).total();
    });
}

}  // namespace

Directions poseDirections(const MeshKernel& kernel, const PoseMesh& mesh) {
    constexpr std::uint32_t kSeed = 1;
    return orient::initOrients(kernel, {mesh.normalX, mesh.normalY, mesh.normalZ}, kSeed);
}

Directions fixedDirectionsIn(const UMatrix4<float>& rotation) {
    Directions directions;
    for (const UVector3<float>& d : orient::fixedOrients()) {
        UVector3<float> before;
        for (int i = 0; i < 3; ++i) {
            before[i] =
                d | UVector3<float>(rotation.at(i, 0), rotation.at(i, 1), rotation.at(i, 2));
        }
        directions.push_back(before);
    }
    return directions;
}

Candidates costedCandidates(const PoseMesh& mesh, const PoseGoal& goal,
                            const Directions& directions, std::size_t exact,
                            const std::function<void(int)>& progress) {
    const orient::ScoreLists scores = evaluated(mesh, goal, directions, progress);
    Candidates candidates;
    for (std::size_t i = 0; i < directions.size(); ++i) {
        const PoseCandidate candidate = {
            directions[i], scores.height[i], scores.supportVolume[i],
            costOf(goal, scores.supportVolume[i], 0.0f, scores.height[i]).total()};
        if (std::isfinite(candidate.cost)) candidates.push_back(candidate);
    }
    sortByCost(candidates);
    const std::size_t first = std::min(exact, candidates.size());
    addOverhangs(mesh, goal, 0, first, candidates);
    float limit = 0.0f;
    for (std::size_t i = 0; i < first; ++i) limit = std::max(limit, candidates[i].cost);
    std::size_t end = first;
    while (end < candidates.size() && candidates[end].cost < limit) ++end;
    addOverhangs(mesh, goal, first, end, candidates);
    sortByCost(candidates);
    return candidates;
}

Directions worthSampling(const PoseMesh& mesh, const PoseGoal& goal, const Directions& directions,
                         float mostForHeight, float most) {
    const float cosine = orient::overhangCosineOf(goal.overhangAngleDeg);
    std::vector<char> isWorth(directions.size());
    const std::function<void(int)> none;
    PoseWork(none, 0, 0).run(directions.size(), [&](std::size_t i) {
        const UVector3<float> up = directions[i].GetNormal();
        const orient::TurnedPart part = onlyHeights(mesh, up);
        const std::int32_t highest = farthestAlong(mesh, up, -1);
        const float height = highest < 0 ? 0.0f : part.point(mesh.flat, highest).z;
        if (!(goal.heightCost * height < mostForHeight)) return;
        const float area = overhangAreaOf(mesh, part, up, cosine);
        isWorth[i] = costOf(goal, 0.0f, area, height).total() < most ? 1 : 0;
    });
    Directions worth;
    for (std::size_t i = 0; i < directions.size(); ++i) {
        if (isWorth[i] != 0) worth.push_back(directions[i]);
    }
    return worth;
}

}  // namespace Tesk::pose

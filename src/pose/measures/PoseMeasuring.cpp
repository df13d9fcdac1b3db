#include "pose/measures/PoseMeasuring.h"

#include <algorithm>
#include <cstdint>

#include "TeskThreads/Team.h"
#include "orient/evaluation/EvaluateOrient.h"
#include "orient/sampling/Overhang.h"
#include "pose/facets/FacetMeasures.h"
#include "pose/facets/RestingOnPart.h"
#include "pose/geometry/PoseTurn.h"
#include "pose/resting/HullFaceSnap.h"
#include "pose/resting/Standing.h"

namespace Tesk::pose {

namespace {

using OptimizeOrient::BuildPose;
using OptimizeOrient::PoseGoal;
using OptimizeOrient::PoseMeasures;

/// What the sampling of the evaluation gives, and the size.
void takeSampled(orient::OrientEvaluator& evaluator, std::size_t place, PoseMeasures& measures) {
    const orient::OrientMeasures sampled = evaluator.evaluate(place);
    measures.height = sampled.height;
    measures.supportVolume = sampled.supportVolume;
    const UBox3<float>& box = evaluator.part(place).box;
    measures.footprintX = box.MaxX() - box.MinX();
    measures.footprintY = box.MaxY() - box.MinY();
}

/// Whether a facet lies on the plate but for rounding, which makes it part of a face of the hull.
bool hasFlatFacet(const PoseMesh& mesh, const orient::TurnedPart& part, const UVector3<float>& up,
                  const Contact& contact) {
    const UBox3<float>& box = part.box;
    const float size = std::max({box.MaxX() - box.MinX(), box.MaxY() - box.MinY(), box.MaxZ()});
    const float rounding = 1e-6f * size;
    const auto isOnPlate = [&](std::int32_t v) { return part.point(mesh.flat, v).z <= rounding; };
    constexpr float kLevel = -0.999999f;  // within 0.08° of straight down
    return std::any_of(contact.facets.begin(), contact.facets.end(), [&](std::int32_t facet) {
        const auto i = static_cast<std::size_t>(facet);
        const auto& corners = mesh.flat.corners[i];
        return (mesh.normal(facet) | up) < kLevel && mesh.areas[i] > rounding * size &&
               std::all_of(corners.begin(), corners.end(), isOnPlate);
    });
}

/// What the facets tell.
void takeFacets(const PoseMesh& mesh, const PoseGoal& goal, const orient::TurnedPart& part,
                const UVector3<float>& up, PoseMeasures& measures) {
    const Overhangs overhangs =
        overhangsOf(mesh, part, up, orient::overhangCosineOf(goal.overhangAngleDeg));
    measures.overhangArea = overhangs.area;
    measures.overhangAreaOnPart = areaRestingOnPart(mesh, part, up, overhangs.facets);
    const Contact contact = contactOf(mesh, part, up);
    measures.contactArea = contact.area;
    measures.contactIslands = countIslands(mesh.flat, contact.facets);
    measures.tiltMarginDeg = tiltMarginOf(mesh, part, contact);
    measures.liesFlat = hasFlatFacet(mesh, part, up, contact) ||
                        restingFaceNear(mesh, up.As<double>().GetNormal(), kFlatDeg).has_value();
    measures.stands =
        isStanding(measures.liesFlat, measures.tiltMarginDeg, measures.contactArea, mesh.volume);
}

/// The part as each rotation sets it down.
std::vector<orient::TurnedPart> setDownBy(const PoseMesh& mesh,
                                          std::span<const UMatrix4<float>> rotations) {
    constexpr auto kGroup = static_cast<std::int64_t>(orient::kGroupSize);
    std::vector<UMatrix4<float>> placements;
    for (const UMatrix4<float>& rotation : rotations) {
        placements.push_back(mesh.flat.placement * rotation);
    }
    std::vector<orient::TurnedPart> parts(rotations.size());
    const auto count = static_cast<std::int64_t>(parts.size());
    Tesk::withTeam(Tesk::threadsFor(count, kGroup), [&](Tesk::Team& team) {
        team.forPieces(count, kGroup, [&](std::int64_t first, std::int64_t end, int) {
            const auto from = static_cast<std::size_t>(first);
            const auto size = static_cast<std::size_t>(end - first);
            orient::standParts(mesh.flat, std::span(placements).subspan(from, size),
                               std::span(parts).subspan(from, size));
        });
    });
    return parts;
}

/// Samples poses that go through the mesh together.
void sampleGroup(const PoseMesh& mesh, const PoseGoal& goal,
                 std::span<const orient::TurnedPart> parts, std::span<BuildPose> poses) {
    orient::OrientEvaluator evaluator(mesh.areas, mesh.flat, goal.overhangAngleDeg,
                                      /*computeSupport=*/true,
                                      /*baseHeight=*/0.0f);
    evaluator.begin(parts);
    for (std::size_t k = 0; k < poses.size(); ++k) takeSampled(evaluator, k, poses[k].measures);
}

}  // namespace

OptimizeOrient::PoseCost costOf(const PoseGoal& goal, float supportVolume, float overhangArea,
                                float height) {
    return {goal.supportVolumeCost * supportVolume, goal.overhangAreaCost * overhangArea,
            goal.heightCost * height};
}

std::vector<BuildPose> measurePoses(const PoseMesh& mesh, const PoseGoal& goal,
                                    std::span<const UMatrix4<float>> rotations, PoseWork& work) {
    std::vector<BuildPose> poses(rotations.size());
    for (std::size_t i = 0; i < poses.size(); ++i) poses[i].rotation = rotations[i];
    const std::vector<orient::TurnedPart> parts = setDownBy(mesh, rotations);
    // Full groups, unless threads would go without work.
    const std::size_t full = (poses.size() + orient::kGroupSize - 1) / orient::kGroupSize;
    const auto threads = static_cast<std::size_t>(Tesk::mostThreads());
    const std::size_t groups = std::max(full, std::min(threads, poses.size()));
    // Sampling and facets are pieces of their own, so that few poses keep all threads busy. The
    // part as it lies comes last and takes longest if it does not lie flat, so the last goes first.
    work.run(poses.size() + groups, [&](std::size_t piece) {
        if (piece < poses.size()) {
            const std::size_t i = poses.size() - 1 - piece;
            takeFacets(mesh, goal, parts[i], upOf(poses[i].rotation), poses[i].measures);
            return;
        }
        const std::size_t group = piece - poses.size();
        const std::size_t first = poses.size() * group / groups;
        const std::size_t size = poses.size() * (group + 1) / groups - first;
        sampleGroup(mesh, goal, std::span(parts).subspan(first, size),
                    std::span(poses).subspan(first, size));
    });
    for (BuildPose& pose : poses) {
        const PoseMeasures& measures = pose.measures;
        pose.cost = costOf(goal, measures.supportVolume, measures.overhangArea, measures.height);
    }
    return poses;
}

}  // namespace Tesk::pose

#include "orient/RankDirections.h"

#include <cmath>

#include "TeskDebug/StopWatchLog.h"
#include "TeskMeshData/TeskMath.h"
#include "orient/CandidateLoop.h"
#include "orient/candidates/InitOrients.h"
#include "orient/turn/Flatten.h"

namespace Tesk::orient {
namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;

/// The area of every triangle as placed, scale included.
std::vector<float> placedAreas(Tesk::Team& team, const FlatMesh& mesh) {
    constexpr std::int64_t kTrianglesPerPiece = 8192;
    const auto count = static_cast<std::int64_t>(mesh.corners.size());
    // With finite coordinates, an identity changes at most the sign of a zero, which no area shows.
    const bool isInPlace = mesh.placement.isIdenticalMatrix() && std::isfinite(mesh.reach);
    const auto placed = [&](std::int32_t vertex) {
        const UPoint3<float> p = mesh.point(vertex);
        return isInPlace ? p : p * mesh.placement;
    };
    std::vector<float> areas(mesh.corners.size());
    team.forPieces(count, kTrianglesPerPiece, [&](std::int64_t first, std::int64_t end, int) {
        for (std::int64_t i = first; i < end; ++i) {
            const auto& [a, b, c] = mesh.corners[static_cast<std::size_t>(i)];
            areas[static_cast<std::size_t>(i)] =
                TeskMath<float>::CalculateTriangleArea(placed(a), placed(b), placed(c));
        }
    });
    return areas;
}

/// The data that all evaluations share.
struct Measured {
    FlatMesh mesh;
    std::vector<float> areas;
};

Measured measure(const MeshKernel& kernel) {
    constexpr std::int64_t kTrianglesPerThread = 50'000;
    const auto mesh = kernel.getMesh();
    Measured measured;
    Tesk::withTeam(Tesk::threadsFor(mesh->TriangleCount(), kTrianglesPerThread),
                   [&](Tesk::Team& team) {
                       measured.mesh = flatten(team, *mesh, kernel.getMatrix());
                       measured.areas = placedAreas(team, measured.mesh);
                   });
    return measured;
}

}  // namespace

void rankDirections(MeshKernel* mesh, const Configure& config, Records records,
                    UVector3<float>& axis, float& angle, std::vector<OptOrientation>* orientations,
                    const std::function<void(int)>& progress) {
    StopWatchLog log;
    mesh->UpdateTopo(/*rebuild=*/true, MeshKernel::kTriangleNeighbours + MeshKernel::kEdgeCounts);
    log.logElapse("Orient-UpdateTopo");
    const std::vector<UVector3<float>> candidates = initOrients(mesh);
    log.logElapse("Orient-InitOri");
    if (progress) progress(3);
    const Measured measured = measure(*mesh);
    log.logElapse("Orient-0");
    if (progress) progress(10);
    ScoreLists scores(candidates.size());
    CandidateLoop(measured.mesh, measured.areas, candidates, config, progress, scores).run();
    if (progress) progress(90);
    rankOrients(candidates, scores, config, records, orientations, axis, angle, progress, log);
}

}  // namespace Tesk::orient

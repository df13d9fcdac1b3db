#include "OrientOptimizer.h"

#include <omp.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <thread>

#include "EvaluateOrient.h"
#include "FlatMesh.h"
#include "InitOrients.h"
#include "RankOrients.h"
#include "TeskDebug/Exception.h"
#include "TeskDebug/StopWatchLog.h"
#include "TeskMeshData/TeskMath.h"

namespace {

using OptimizeOrient::Configure;
using OptimizeOrient::OptOrientation;
using Progress = std::function<void(int)>;

/// The area of every triangle as placed, scale included.
std::vector<float> placedAreas(const FlatMesh& mesh) {
    const auto count = static_cast<std::int64_t>(mesh.corners.size());
    std::vector<float> areas(mesh.corners.size());
#pragma omp parallel for schedule(static)
    for (std::int64_t i = 0; i < count; ++i) {
        const auto& [a, b, c] = mesh.corners[static_cast<std::size_t>(i)];
        areas[static_cast<std::size_t>(i)] = TeskMath<float>::CalculateTriangleArea(
            mesh.point(a) * mesh.placement, mesh.point(b) * mesh.placement,
            mesh.point(c) * mesh.placement);
    }
    return areas;
}

/// The parallel evaluation of all candidates. Only the calling thread reports progress; its abort
/// request reaches the other threads through a flag that each reads before its next candidate.
class CandidateLoop {
 public:
    CandidateLoop(const FlatMesh& mesh, const std::vector<float>& areas,
                  const std::vector<UVector3<float>>& candidates, const Configure& config,
                  const Progress& progress, ScoreLists& scores)
        : m_mesh(mesh),
          m_areas(areas),
          m_candidates(candidates),
          m_config(config),
          m_progress(progress),
          m_scores(scores) {}

    /// Throws Tesk::AbortException after an abort, and what an evaluation threw.
    void run() {
        const auto count = static_cast<std::int32_t>(m_candidates.size());
        const std::thread::id callingThread = std::this_thread::get_id();
#pragma omp parallel
        {
            EvaluationBuffers buffers;
#pragma omp for schedule(static)
            for (std::int32_t i = 0; i < count; ++i) {
                if (m_isAborted) continue;
                evaluate(static_cast<std::size_t>(i), buffers);
                if (std::this_thread::get_id() == callingThread) report(omp_get_num_threads());
            }
        }
        if (m_failure) std::rethrow_exception(m_failure);
        if (m_isAborted) throw Tesk::AbortException("Aborting...");
    }

 private:
    bool needsSupport() const {
        return m_config.supportAreaWeight != 0 || m_config.supportVolumeWeight != 0 ||
               m_config.computeSupport != 0;
    }

    // An exception must not leave the parallel region: the first one is kept and ends the loop.
    void evaluate(std::size_t i, EvaluationBuffers& buffers) {
        try {
            evaluateOrient(m_areas, m_mesh, m_candidates[i], m_config.overhangAngle, needsSupport(),
                           m_scores.height[i], m_scores.supportVolume[i], m_scores.overhangArea[i],
                           m_scores.projectedArea[i], m_scores.boxVolume[i],
                           m_scores.reservedScore[i], m_config.baseHeight, buffers);
        } catch (...) {
#pragma omp critical(tesk_orient_failure)
            if (!m_failure) m_failure = std::current_exception();
            m_isAborted = true;
        }
    }

    /// The calling thread runs about its share of the candidates, so that its count times the
    /// number of threads goes from nothing to all of them.
    void report(int threads) {
        const float done = static_cast<float>(m_counter) * static_cast<float>(threads) /
                           static_cast<float>(m_candidates.size());
        ++m_counter;
        if (!m_progress || m_isAborted) return;
        const float fraction = std::min(done, 1.0f);
        try {
            m_progress(static_cast<int>(static_cast<double>(fraction) * 80.0 + 10.0));
        } catch (const Tesk::AbortException&) {
            m_isAborted = true;
        }
    }

    const FlatMesh& m_mesh;
    const std::vector<float>& m_areas;
    const std::vector<UVector3<float>>& m_candidates;
    const Configure& m_config;
    const Progress& m_progress;
    ScoreLists& m_scores;
    std::atomic<bool> m_isAborted = false;
    std::exception_ptr m_failure;
    std::int32_t m_counter = 0;
};

void rankBuildDirections(MeshKernel* mesh, const Configure& config, UVector3<float>& axis,
                         float& angle, std::vector<OptOrientation>* orientations,
                         const Progress& progress) {
    StopWatchLog log;
    mesh->UpdateTopo(/*rebuild=*/true, MeshKernel::kTriangleNeighbours + MeshKernel::kEdgeCounts);
    log.logElapse("Orient-UpdateTopo");
    const std::vector<UVector3<float>> candidates = initOrients(mesh);
    log.logElapse("Orient-InitOri");
    if (progress) progress(3);
    const FlatMesh flat = flatten(*mesh->getMesh(), mesh->getMatrix());
    const std::vector<float> areas = placedAreas(flat);
    log.logElapse("Orient-0");
    if (progress) progress(10);
    ScoreLists scores(candidates.size());
    CandidateLoop(flat, areas, candidates, config, progress, scores).run();
    if (progress) progress(90);
    rankOrients(candidates, scores, config, orientations, axis, angle, progress, log);
}

}  // namespace

void OrientOptimizer::calculateOrients(MeshKernel* mesh, Configure config, UVector3<float>& axis,
                                       float& angle, std::vector<OptOrientation>* orientations,
                                       std::function<void(int)> progress) {
    rankBuildDirections(mesh, config, axis, angle, orientations, progress);
}

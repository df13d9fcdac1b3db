#include "CandidateLoop.h"

#include <omp.h>

#include <algorithm>
#include <thread>

#include "EvaluateOrient.h"
#include "TeskDebug/Exception.h"

CandidateLoop::CandidateLoop(const FlatMesh& mesh, const std::vector<float>& areas,
                             const std::vector<UVector3<float>>& candidates,
                             const OptimizeOrient::Configure& config,
                             const std::function<void(int)>& progress, ScoreLists& scores)
    : m_mesh(mesh),
      m_areas(areas),
      m_candidates(candidates),
      m_config(config),
      m_progress(progress),
      m_scores(scores) {}

void CandidateLoop::run() {
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

bool CandidateLoop::needsSupport() const {
    return m_config.supportAreaWeight != 0 || m_config.supportVolumeWeight != 0 ||
           m_config.computeSupport != 0;
}

// An exception must not leave the parallel region: the first one is kept and ends the loop.
void CandidateLoop::evaluate(std::size_t i, EvaluationBuffers& buffers) {
    try {
        evaluateOrient(m_areas, m_mesh, m_candidates[i], m_config.overhangAngle, needsSupport(),
                       m_scores.height[i], m_scores.supportVolume[i], m_scores.overhangArea[i],
                       m_scores.projectedArea[i], m_scores.boxVolume[i], m_scores.reservedScore[i],
                       m_config.baseHeight, buffers);
    } catch (...) {
#pragma omp critical(tesk_orient_failure)
        if (!m_failure) m_failure = std::current_exception();
        m_isAborted = true;
    }
}

/// The calling thread runs about its share of the candidates, so that its count times the number
/// of threads goes from nothing to all of them.
void CandidateLoop::report(int threads) {
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

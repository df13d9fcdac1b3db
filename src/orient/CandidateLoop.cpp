#include "CandidateLoop.h"

#include <omp.h>

#include <algorithm>
#include <span>

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
#pragma omp parallel
    runShare(omp_get_thread_num(), omp_get_num_threads());
    if (m_failure) std::rethrow_exception(m_failure);
    if (m_isAborted) throw Tesk::AbortException("Aborting...");
}

bool CandidateLoop::needsSupport() const {
    return m_config.supportAreaWeight != 0 || m_config.supportVolumeWeight != 0 ||
           m_config.computeSupport != 0;
}

/// Shares of one after another candidate, the first threads' one larger where they do not come out
/// even.
std::size_t CandidateLoop::firstOfShare(int thread, int threads) const {
    const auto t = static_cast<std::size_t>(thread);
    const auto shares = static_cast<std::size_t>(threads);
    return m_candidates.size() / shares * t + std::min(m_candidates.size() % shares, t);
}

// An exception must not leave the parallel region: the first one is kept and ends the loop.
void CandidateLoop::runShare(int thread, int threads) {
    try {
        OrientEvaluator evaluator(m_areas, m_mesh, m_config.overhangAngle, needsSupport(),
                                  m_config.baseHeight);
        const std::size_t end = firstOfShare(thread + 1, threads);
        for (std::size_t first = firstOfShare(thread, threads); first < end && !m_isAborted;
             first += kGroupSize) {
            const std::size_t count = std::min(kGroupSize, end - first);
            evaluator.begin(std::span(m_candidates).subspan(first, count));
            for (std::size_t k = 0; k < count && !m_isAborted; ++k) {
                const std::size_t i = first + k;
                evaluator.evaluate(k, m_scores.height[i], m_scores.supportVolume[i],
                                   m_scores.overhangArea[i], m_scores.projectedArea[i],
                                   m_scores.boxVolume[i], m_scores.reservedScore[i]);
                if (thread == 0) report(threads);
            }
        }
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

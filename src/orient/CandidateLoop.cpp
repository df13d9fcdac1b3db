#include "orient/CandidateLoop.h"

#include <algorithm>
#include <span>

#include "TeskDebug/Exception.h"
#include "orient/evaluation/EvaluateOrient.h"

namespace Tesk::orient {

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
    Tesk::withTeam(Tesk::mostThreads(), [&](Tesk::Team& team) { evaluateOn(team); });
    if (m_isAborted) throw Tesk::AbortException("Aborting...");
}

bool CandidateLoop::needsSupport() const {
    return m_config.supportAreaWeight != 0 || m_config.supportVolumeWeight != 0 ||
           m_config.computeSupport != 0;
}

/// Shares of one after another candidate, the first threads' one larger where they do not come out
/// even.
std::size_t CandidateLoop::firstOfShare(std::size_t share) const {
    const std::size_t shares = m_next.size();
    return m_candidates.size() / shares * share + std::min(m_candidates.size() % shares, share);
}

void CandidateLoop::evaluateOn(Tesk::Team& team) {
    m_next = std::vector<std::atomic<std::size_t>>(static_cast<std::size_t>(team.size()));
    for (std::size_t i = 0; i < m_next.size(); ++i) m_next[i] = firstOfShare(i);
    team.run([&](int thread) {
        try {
            work(thread);
        } catch (...) {
            m_isAborted = true;
            throw;
        }
    });
    const auto reports = static_cast<std::int32_t>(firstOfShare(1));
    while (m_counter < reports && !m_isAborted) report();
}

/// The first candidate of a group that nobody has taken, of the thread's own share or else of the
/// next ones.
std::optional<std::size_t> CandidateLoop::nextGroup(int thread, std::size_t& end) {
    for (std::size_t k = 0; k < m_next.size(); ++k) {
        const std::size_t share = (static_cast<std::size_t>(thread) + k) % m_next.size();
        end = firstOfShare(share + 1);
        const std::size_t first = m_next[share].fetch_add(kGroupSize);
        if (first < end) return first;
    }
    return std::nullopt;
}

void CandidateLoop::work(int thread) {
    OrientEvaluator evaluator(m_areas, m_mesh, m_config.overhangAngle, needsSupport(),
                              m_config.baseHeight);
    std::size_t end = 0;
    while (const std::optional<std::size_t> first = nextGroup(thread, end)) {
        const std::size_t count = std::min(kGroupSize, end - *first);
        if (m_isAborted) return;
        evaluator.begin(std::span(m_candidates).subspan(*first, count));
        for (std::size_t k = 0; k < count && !m_isAborted; ++k) {
            const std::size_t i = *first + k;
            evaluator.evaluate(k, m_scores.height[i], m_scores.supportVolume[i],
                               m_scores.overhangArea[i], m_scores.projectedArea[i],
                               m_scores.boxVolume[i], m_scores.reservedScore[i]);
            if (thread == 0) report();
        }
    }
}

/// The calling thread's count times the number of threads goes from nothing to all candidates. What
/// it does beyond its share is not reported; where others did a part of that, it reports the rest
/// when all is done.
void CandidateLoop::report() {
    if (m_counter >= static_cast<std::int32_t>(firstOfShare(1))) return;
    const float done = static_cast<float>(m_counter) * static_cast<float>(m_next.size()) /
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

}  // namespace Tesk::orient

#include "orient/CandidateLoop.h"

#include <algorithm>
#include <span>

#include "TeskCommon/Assert.h"
#include "TeskDebug/Exception.h"

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
      m_scores(scores) {
    TESK_ASSERT(areas.size() == mesh.corners.size());
    TESK_ASSERT(scores.height.size() == candidates.size());
}

void CandidateLoop::run() {
    Tesk::withTeam(Tesk::mostThreads(), [&](Tesk::Team& team) { evaluateOn(team); });
    if (m_isAborted) throw Tesk::AbortException("Aborting...");
}

bool CandidateLoop::needsSupport() const {
    return m_config.supportAreaWeight != 0 || m_config.supportVolumeWeight != 0 ||
           m_config.computeSupport != 0;
}

/// The first candidate of a share. If the candidates do not divide evenly, each of the first shares
/// has one more than the rest.
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
    while (m_reports < reports && !m_isAborted) report();
}

/// Takes a group from the thread's own share or, if nothing is left there, from the next share that
/// has one. None when all candidates are taken.
std::optional<CandidateLoop::Group> CandidateLoop::nextGroup(int thread) {
    for (std::size_t k = 0; k < m_next.size(); ++k) {
        const std::size_t share = (static_cast<std::size_t>(thread) + k) % m_next.size();
        const std::size_t end = firstOfShare(share + 1);
        const std::size_t first = m_next[share].fetch_add(kGroupSize);
        if (first < end) return Group{first, std::min(kGroupSize, end - first)};
    }
    return std::nullopt;
}

void CandidateLoop::work(int thread) {
    OrientEvaluator evaluator(m_areas, m_mesh, m_config.overhangAngle, needsSupport(),
                              m_config.baseHeight);
    while (const std::optional<Group> group = nextGroup(thread)) {
        if (m_isAborted) return;
        evaluator.begin(std::span(m_candidates).subspan(group->first, group->count));
        for (std::size_t k = 0; k < group->count && !m_isAborted; ++k) {
            store(group->first + k, evaluator.evaluate(k));
            if (thread == 0) report();
        }
    }
}

void CandidateLoop::store(std::size_t candidate, const OrientMeasures& measures) {
    m_scores.height[candidate] = measures.height;
    m_scores.supportVolume[candidate] = measures.supportVolume;
    m_scores.overhangArea[candidate] = measures.overhangArea;
    m_scores.projectedArea[candidate] = measures.projectedArea;
    m_scores.boxVolume[candidate] = measures.boxVolume;
    m_scores.reservedScore[candidate] = measures.reservedScore;
}

/// The number of reports so far, times the number of threads, estimates how many candidates are
/// evaluated: it runs from 0 to about all of them. The calling thread does not report candidates of
/// other shares. If other threads have evaluated candidates of its share, evaluateOn() makes the
/// missing reports at the end.
void CandidateLoop::report() {
    if (m_reports >= static_cast<std::int32_t>(firstOfShare(1))) return;
    const float done = static_cast<float>(m_reports) * static_cast<float>(m_next.size()) /
                       static_cast<float>(m_candidates.size());
    ++m_reports;
    if (!m_progress || m_isAborted) return;
    const float fraction = std::min(done, 1.0f);
    try {
        m_progress(static_cast<int>(static_cast<double>(fraction) * 80.0 + 10.0));
    } catch (const Tesk::AbortException&) {
        m_isAborted = true;
    }
}

}  // namespace Tesk::orient

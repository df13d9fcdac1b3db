#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "OrientOptimizer.h"
#include "TeskDataBasic/UVector3.h"
#include "TeskThreads/Team.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/ranking/RankOrients.h"

namespace Tesk::orient {

/// The parallel evaluation of all candidates: each thread has a share of them, which it takes in
/// order and in groups; when it has done, it takes what is left of the others'. Only the calling
/// thread reports progress, once for each candidate of its own share, whoever evaluates that; its
/// abort request reaches the other threads through a flag that each reads before its next
/// candidate.
class CandidateLoop {
 public:
    /// Keeps references to everything but its own counters.
    CandidateLoop(const FlatMesh& mesh, const std::vector<float>& areas,
                  const std::vector<UVector3<float>>& candidates,
                  const OptimizeOrient::Configure& config, const std::function<void(int)>& progress,
                  ScoreLists& scores);

    /// Fills the scores, one slot per candidate; none for none. Throws Tesk::AbortException after
    /// an abort, and what an evaluation threw.
    void run();

 private:
    bool needsSupport() const;
    std::size_t firstOfShare(std::size_t share) const;
    void evaluateOn(Tesk::Team& team);
    void work(int thread);
    std::optional<std::size_t> nextGroup(int thread, std::size_t& end);
    void report();

    const FlatMesh& m_mesh;
    const std::vector<float>& m_areas;
    const std::vector<UVector3<float>>& m_candidates;
    const OptimizeOrient::Configure& m_config;
    const std::function<void(int)>& m_progress;
    ScoreLists& m_scores;
    std::vector<std::atomic<std::size_t>> m_next;  ///< of each thread's share
    std::atomic<bool> m_isAborted = false;
    std::int32_t m_counter = 0;
};

}  // namespace Tesk::orient

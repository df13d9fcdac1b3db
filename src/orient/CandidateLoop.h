#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "OrientOptimizer.h"
#include "TeskDataBasic/UVector3.h"
#include "TeskThreads/Team.h"
#include "orient/evaluation/EvaluateOrient.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/ranking/RankOrients.h"

namespace Tesk::orient {

/// Evaluates all candidates in parallel. Each thread has a share of consecutive candidates, which
/// it evaluates in order and in groups. When its share is finished, it helps with the shares of
/// other threads.
///
/// Only the calling thread reports progress: once for each candidate of its own share, even if
/// another thread evaluates that candidate. When the callback aborts, a flag stops the other
/// threads before their next candidate.
class CandidateLoop {
 public:
    /// Keeps references to all arguments. `areas` holds the area of every triangle; each list of
    /// `scores` has one slot per candidate.
    CandidateLoop(const FlatMesh& mesh, const std::vector<float>& areas,
                  const std::vector<UVector3<float>>& candidates,
                  const OptimizeOrient::Configure& config, const std::function<void(int)>& progress,
                  ScoreLists& scores);

    /// Fills the scores; there may be no candidates. Throws Tesk::AbortException after an abort,
    /// rethrows any other exception of the callback, and throws std::bad_alloc.
    void run();

 private:
    /// Consecutive candidates of one share, at most kGroupSize.
    struct Group {
        std::size_t first, count;
    };

    bool needsSupport() const;
    std::size_t firstOfShare(std::size_t share) const;
    void evaluateOn(Tesk::Team& team);
    void work(int thread);
    std::optional<Group> nextGroup(int thread);
    void store(std::size_t candidate, const OrientMeasures& measures);
    void report();

    const FlatMesh& m_mesh;
    const std::vector<float>& m_areas;
    const std::vector<UVector3<float>>& m_candidates;
    const OptimizeOrient::Configure& m_config;
    const std::function<void(int)>& m_progress;
    ScoreLists& m_scores;
    std::vector<std::atomic<std::size_t>> m_next;  ///< per share, the next candidate to take
    std::atomic<bool> m_isAborted = false;
    std::int32_t m_reports = 0;
};

}  // namespace Tesk::orient

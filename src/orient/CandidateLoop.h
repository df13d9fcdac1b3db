#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <vector>

#include "FlatMesh.h"
#include "OrientOptimizer.h"
#include "RankOrients.h"
#include "TeskDataBasic/UVector3.h"

/// The parallel evaluation of all candidates: each thread takes a share of them, in order, and
/// those in groups. Only the calling thread reports progress; its abort
/// request reaches the other threads through a flag that each reads before its next
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
    std::size_t firstOfShare(int thread, int threads) const;
    void runShare(int thread, int threads);
    void report(int threads);

    const FlatMesh& m_mesh;
    const std::vector<float>& m_areas;
    const std::vector<UVector3<float>>& m_candidates;
    const OptimizeOrient::Configure& m_config;
    const std::function<void(int)>& m_progress;
    ScoreLists& m_scores;
    std::atomic<bool> m_isAborted = false;
    std::exception_ptr m_failure;
    std::int32_t m_counter = 0;
};

#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "minbox/bound/BoxBound.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/fit/FaceWorkspace.h"
#include "minbox/workers/FaceWorkers.h"

namespace Tesk::minbox {

/// The box of least volume with a side flush with a hull face; of equal volumes that of the lowest
/// face. Any number of threads share the work.
///
/// The result is defined by a pass over the faces in ascending order that checks each box before it
/// becomes the best. The search visits them in an order that finds good boxes early, on whichever
/// thread is free, and skips faces that cannot have the best box. As long as all boxes pass their
/// check, that gives the same result. If one fails, the pass is made, using the volumes and bounds
/// known by then.
class FaceSearch {
 public:
    /// Bounds and orders the faces. Keeps references. The workers lower the limit to the volumes of
    /// the boxes that pass their check.
    ///
    /// @param hull  has faces
    FaceSearch(const SearchHull& hull, const BoxBound& bound, VolumeLimit& limit,
               std::uint32_t threadCount);

    /// One thread's part of the search. Holds working memory.
    class Worker {
     public:
        explicit Worker(FaceSearch& search);

        /// Searches faces until none are left. Calls step() before each; if it returns false, the
        /// thread's part ends, and FaceSearch::best() is meaningless.
        template <class Step>
        void run(Step step);

     private:
        friend class FaceSearch;

        void searchFace(int face);
        VolumeCandidate makeBox();

        FaceSearch& m_search;
        FaceWorkspace m_workspace;
        int m_bestFace = 0;
        std::optional<VolumeCandidate> m_best;
    };

    const SearchHull& hull() const { return m_hull; }

    /// The best box, once all workers have ended; std::nullopt if no face gave one.
    ///
    /// @param ranges  if the pass is needed, it is made over each range separately
    std::optional<VolumeCandidate> best(std::span<Worker> workers,
                                        std::span<const FaceRange> ranges) const;

 private:
    /// What is known about a face.
    struct Known {
        enum class State : std::uint8_t { kNotSearched, kNoBox, kBox };

        double volume = 0.0;  ///< of its box; a lower bound of it if the face was not searched
        State state = State::kNotSearched;
    };

    void boundFaces(std::uint32_t threadCount);
    void orderFaces();
    std::span<const int> takeFaces();
    bool canHoldTheBest(int face);
    std::optional<VolumeCandidate> pass(Worker& worker, const FaceRange& range) const;

    const SearchHull& m_hull;
    const BoxBound& m_bound;
    VolumeLimit& m_limit;
    std::vector<Known> m_known;  ///< by face; only the worker that took the face touches it
    std::vector<int> m_faces;    ///< in the order of the search
    std::atomic<std::size_t> m_taken = 0;
    std::atomic<bool> m_isPassNeeded = false;
};

template <class Step>
void FaceSearch::Worker::run(Step step) {
    for (;;) {
        const std::span<const int> faces = m_search.takeFaces();
        if (faces.empty()) return;
        for (const int face : faces) {
            if (!step()) return;
            if (m_search.canHoldTheBest(face)) searchFace(face);
        }
    }
}

}  // namespace Tesk::minbox

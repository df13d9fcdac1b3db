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
/// The result is that of a pass over the faces in ascending order that checks each box before it
/// becomes the best. The faces are searched in an order that finds good boxes early instead, by
/// whichever thread is free, and faces that cannot have the best box are passed over. That gives
/// the same result as long as all boxes pass their check; if one does not, the pass is made, over
/// the volumes known by then.
class FaceSearch {
 public:
    /// Bounds and orders the faces, of which there are some. Keeps references. Lowers the limit to
    /// the volumes of sound boxes.
    FaceSearch(const SearchHull& hull, const BoxBound& bound, VolumeLimit& limit,
               std::uint32_t threadCount);

    /// One thread's part in the search. Holds working memory.
    class Worker {
     public:
        explicit Worker(FaceSearch& search);

        /// Searches faces until none are left. Calls step() before each; if that returns false, the
        /// thread's part ends, and the best box is meaningless.
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

    /// The best box, once all workers have ended; nothing if no face gave one.
    ///
    /// @param ranges  those over which the pass is made, each on its own
    std::optional<VolumeCandidate> best(std::span<Worker> workers,
                                        std::span<const FaceRange> ranges) const;

 private:
    /// What is known of a face.
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

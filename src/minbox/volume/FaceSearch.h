#pragma once

#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "minbox/bound/BoxBound.h"
#include "minbox/bound/VolumeLimit.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/HeightFinder.h"
#include "minbox/hull/SearchHull.h"
#include "minbox/outline/Calipers.h"
#include "minbox/outline/Silhouette.h"
#include "minbox/workers/FaceWorkers.h"

/// The box of least volume with a side flush with a hull face: of equal volumes that of the lowest
/// face. Any number of threads work at it together.
///
/// What is meant is a pass over the faces in ascending order that checks a box before it becomes
/// the best. The faces are looked at in an order that suits the search instead, by whichever thread
/// is free, and those passed over that cannot have the best box. That gives the same as long as
/// boxes pass their check; where one does not, the pass is made, over the volumes known by then.
class FaceSearch {
 public:
    /// Bounds and orders the faces. Keeps references to all. Lowers the limit to the volumes of
    /// sound boxes.
    FaceSearch(const MinBoundingBoxImpl& impl, const SearchHull& hull, const BoxBound& bound,
               VolumeLimit& limit);

    /// One thread's part in the search. Holds working memory.
    class Worker {
     public:
        explicit Worker(FaceSearch& search);

        /// Looks at faces until there are no more. `step()` is called before each; where it returns
        /// false, the thread's part ends, and the best box is without meaning.
        template <class Step>
        void run(Step step);

     private:
        friend class FaceSearch;

        void look(int face);
        void offer(int face, VolumeCandidate& best);
        VolumeCandidate makeBox(int face);

        FaceSearch& m_search;
        Silhouette m_silhouette;
        Calipers m_calipers;
        HeightFinder m_heights;
        int m_bestFace = 0;
        VolumeCandidate m_best;
    };

    const SearchHull& hull() const { return m_hull; }

    /// The best box once the workers have ended: its volume is unset where no face gave one.
    ///
    /// @param ranges  those that the pass is made over, each from the start
    VolumeCandidate best(std::span<Worker> workers, std::span<const FaceRange> ranges) const;

 private:
    /// What is known of a face.
    struct Known {
        enum class State : std::uint8_t { kNotLookedAt, kNoBox, kBox };

        double volume = 0.0;  ///< of its box; a bound below it where it was not looked at
        State state = State::kNotLookedAt;
    };

    const Vector& normal(int face) const {
        return m_hull.normals()[static_cast<std::size_t>(face)];
    }
    void boundFaces();
    void orderFaces();
    std::span<const int> takeFaces();
    bool canHoldTheBest(int face);
    VolumeCandidate pass(Worker& worker, const FaceRange& range) const;

    const MinBoundingBoxImpl& m_impl;
    const SearchHull& m_hull;
    const BoxBound& m_bound;
    VolumeLimit& m_limit;
    std::vector<Known> m_known;  ///< by face; each is one worker's business
    std::vector<int> m_faces;    ///< in the order in which they are looked at
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
            if (m_search.canHoldTheBest(face)) look(face);
        }
    }
}

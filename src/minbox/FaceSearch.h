#pragma once

#include <cstdint>
#include <vector>

#include "BoxCandidate.h"
#include "Calipers.h"
#include "DirectionOrder.h"
#include "FaceWorkers.h"
#include "HeightFinder.h"
#include "MinBoundingBoxImpl.h"
#include "SearchHull.h"
#include "Silhouette.h"
#include "VolumeBound.h"
#include "VolumeLimit.h"

/// The box of least volume with a side flush with a hull face, over a range of faces: of equal
/// volumes that of the lowest face. Holds working memory; one per thread.
///
/// What is meant is a pass over the faces in ascending order that checks a box before it becomes
/// the best. The faces are looked at in an order that suits the caches instead, and those passed
/// over that cannot have the best box. That gives the same as long as boxes pass their check; where
/// one does not, the pass is made, over the volumes known by then.
class FaceSearch {
 public:
    /// Keeps references to all. Lowers the limit to the volumes of sound boxes.
    FaceSearch(const MinBoundingBoxImpl& impl, const SearchHull& hull, const VolumeBound& bound,
               VolumeLimit& limit);

    /// Searches a range. `step()` is called before each face; where it returns false, the search
    /// ends and the best box is without meaning.
    template <class Step>
    void run(const FaceRange& range, Step step);

    /// Its volume is unset where no face gave one.
    const VolumeCandidate& best() const { return m_best; }

 private:
    VolumeCandidate makeBox(int face);

    void start(const FaceRange& range);
    std::vector<int> facesInOrder() const;
    void lookAtMostPromising();
    bool canHoldTheBest(int face);
    void look(int face);
    void pass();
    void offer(int face);

    const MinBoundingBoxImpl& m_impl;
    const SearchHull& m_hull;
    const VolumeBound& m_bound;
    VolumeLimit& m_limit;
    Silhouette m_silhouette;
    Calipers m_calipers;
    HeightFinder m_heights;
    FaceRange m_range{0, 0};
    /// What is known of a face of the range.
    struct Known {
        enum class State : std::uint8_t { kNotLookedAt, kNoBox, kBox };

        double volume = 0.0;  ///< of its box; a bound below it where it was not looked at
        State state = State::kNotLookedAt;
    };

    Known& known(int face) { return m_known[static_cast<std::size_t>(face - m_range.first)]; }

    std::vector<Known> m_known;
    bool m_isPassNeeded = false;
    int m_bestFace = 0;
    VolumeCandidate m_best;
};

template <class Step>
void FaceSearch::run(const FaceRange& range, Step step) {
    start(range);
    lookAtMostPromising();
    for (const int face : facesInOrder()) {
        if (!step()) return;
        if (canHoldTheBest(face)) look(face);
    }
    if (m_isPassNeeded) pass();
}

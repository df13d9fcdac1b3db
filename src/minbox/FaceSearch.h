#pragma once

#include <optional>
#include <vector>

#include "BoxCandidate.h"
#include "Calipers.h"
#include "DirectionOrder.h"
#include "FaceWorkers.h"
#include "HeightFinder.h"
#include "MinBoundingBoxImpl.h"
#include "SearchHull.h"
#include "Silhouette.h"
#include "VolumeLimit.h"

/// The box of least volume with a side flush with a hull face, over a range of faces: of equal
/// volumes that of the lowest face. Holds working memory; one per thread.
///
/// What is meant is a pass over the faces in ascending order that checks a box before it becomes
/// the best. The faces are looked at in an order that suits the caches instead. That gives the same
/// as long as boxes pass their check; where one does not, the pass is made, over the volumes known
/// by then.
class FaceSearch {
 public:
    /// Keeps references to all. Lowers the limit to the volumes of sound boxes.
    FaceSearch(const MinBoundingBoxImpl& impl, const SearchHull& hull, VolumeLimit& limit);

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
    void look(int face);
    void pass();
    void offer(int face);

    const MinBoundingBoxImpl& m_impl;
    const SearchHull& m_hull;
    VolumeLimit& m_limit;
    Silhouette m_silhouette;
    Calipers m_calipers;
    HeightFinder m_heights;
    FaceRange m_range{0, 0};
    std::vector<std::optional<double>> m_volumes;  ///< per face of the range, where there is a box
    bool m_isPassNeeded = false;
    int m_bestFace = 0;
    VolumeCandidate m_best;
};

template <class Step>
void FaceSearch::run(const FaceRange& range, Step step) {
    start(range);
    for (const int face : facesInOrder()) {
        if (!step()) return;
        look(face);
    }
    if (m_isPassNeeded) pass();
}

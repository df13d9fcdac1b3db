#include "minbox/basearea/BaseAreaSearch.h"

#include <algorithm>

#include "minbox/basearea/BaseAreaScores.h"
#include "minbox/bound/BoxBound.h"
#include "minbox/fit/LowDimensionBox.h"
#include "minbox/fit/OfferBox.h"
#include "minbox/hull/HeightFinder.h"
#include "minbox/hull/SearchHull.h"
#include "minbox/outline/Silhouette.h"
#include "minbox/workers/FaceWorkers.h"

namespace {

/// The working memory of one thread, and the best box of its directions.
struct DirectionWorker {
    DirectionWorker(const MinBoundingBoxImpl& impl, const SearchHull& hull)
        : silhouette(impl, hull.normals(), hull.links()),
          calipers(impl),
          heights(impl, hull.links()) {
        calipers.reserve(hull.hull().getVertices().size());
    }

    Silhouette silhouette;
    Calipers calipers;
    HeightFinder heights;
    BoxCandidate best;
};

/// What the search makes small.
class BoxKey {
 public:
    explicit BoxKey(const MinBoundingBoxImpl& impl) : m_isBaseArea(impl.baseAreaMode) {}

    float operator()(const BoxCandidate& box) const {
        return m_isBaseArea ? box.score : box.height;
    }

 private:
    bool m_isBaseArea;
};

/// Tells which faces cannot give a smaller box than one that is known.
class FaceFilter {
 public:
    FaceFilter(const MinBoundingBoxImpl& impl, const SearchHull& hull)
        : m_impl(impl), m_bound(impl, hull, BoxMeasure::kSmallestSide) {}

    bool canGiveSmaller(const Vector& direction, const BoxCandidate& best) const {
        // More than what rounding to float does to a key.
        constexpr float kRounding = 1.000001f;
        if (best.volume == m_impl.unset || isBeyondFloat(direction)) return true;
        const auto limit = static_cast<double>(std::max(BoxKey(m_impl)(best), 0.0f) * kRounding);
        return m_impl.baseAreaMode ? !m_bound.isAbove(limit, direction)
                                   : !(m_bound.heightAlong(direction) > limit);
    }

 private:
    /// Extents are rounded to float before they are divided by the lengths of their axes, which go
    /// with the square of the direction's: along a very short one, their bits may get lost, and
    /// a box seem smaller than it is.
    bool isBeyondFloat(const Vector& direction) const {
        constexpr double kLeast = 1e-8;
        return !(direction.GetLength() * m_bound.hullDiagonal() > kLeast);
    }

    const MinBoundingBoxImpl& m_impl;
    BoxBound m_bound;
};

void searchDirection(const MinBoundingBoxImpl& impl, const SearchHull& hull, int face,
                     const FaceFilter& filter, DirectionWorker& worker) {
    const Vector& direction = hull.normals()[static_cast<std::size_t>(face)];
    if (!filter.canGiveSmaller(direction, worker.best)) return;
    const auto rangeAlong = [&](const Vector& origin, const Vector& along) {
        return worker.heights.rangeAlong(origin, along);
    };
    const auto makeBox = [&] {
        return impl.baseAreaMode ? leastBaseBox(impl, direction, worker.calipers, rangeAlong)
                                 : lowestBox(impl, direction, worker.calipers, rangeAlong);
    };
    const auto remeasure = [&](BoxCandidate& box) { measureAgain(impl, box); };
    offerOver(impl, direction, worker.silhouette.along(face), worker.calipers, makeBox,
              BoxKey(impl), remeasure, worker.best);
}

/// Clears the mode when the search ends, however it does.
class ModeScope {
 public:
    ModeScope(MinBoundingBoxImpl& impl, bool isBaseArea) : m_impl(impl) {
        impl.baseAreaMode = isBaseArea;
        impl.heightMode = !isBaseArea;
    }

    ~ModeScope() {
        m_impl.baseAreaMode = false;
        m_impl.heightMode = false;
    }

    ModeScope(const ModeScope&) = delete;
    ModeScope& operator=(const ModeScope&) = delete;

 private:
    MinBoundingBoxImpl& m_impl;
};

OrientedBox3 search(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points,
                    bool isBaseArea) {
    const ModeScope mode(impl, isBaseArea);
    impl.caliperFlag = true;
    impl.pointCount = n;
    const SearchHull hull(impl, n, points);
    impl.progress = std::make_unique<ProgressRecord>(0, hull.faceCount(), impl.callback);
    if (!hull.hasFaces()) return lowDimensionBox(impl);
    BoxCandidate best;
    searchDirections(impl, hull, best);
    return best.volume == impl.unset ? noBox() : toOrientedBox(impl, best);
}

}  // namespace

void searchDirections(MinBoundingBoxImpl& impl, const SearchHull& hull, BoxCandidate& best) {
    const std::vector<FaceRange> ranges = splitFaces(hull.faceCount(), impl.threadCount);
    const FaceFilter filter(impl, hull);
    std::vector<DirectionWorker> workers;
    workers.reserve(ranges.size());
    for (std::size_t t = 0; t < ranges.size(); ++t) workers.emplace_back(impl, hull);
    const auto merge = [&](std::size_t t) {
        if (workers[t].best.volume != impl.unset &&
            isBetter(impl, workers[t].best, best, BoxKey(impl))) {
            best = workers[t].best;
        }
    };
    if (ranges.size() == 1) {
        for (int face = 0; face < hull.faceCount(); ++face) {
            if (impl.callback) impl.progress->step();
            searchDirection(impl, hull, face, filter, workers[0]);
        }
        merge(0);
        return;
    }
    const auto work = [&](std::size_t t) {
        for (int face = ranges[t].first; face < ranges[t].last; ++face) {
            searchDirection(impl, hull, face, filter, workers[t]);
        }
    };
    runWorkers(ranges.size(), work, merge, [] {});
}

OrientedBox3 searchLeastBaseArea(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points) {
    return search(impl, n, points, /*isBaseArea=*/true);
}

OrientedBox3 searchLeastHeight(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points) {
    return search(impl, n, points, /*isBaseArea=*/false);
}

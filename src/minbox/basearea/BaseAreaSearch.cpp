#include "minbox/basearea/BaseAreaSearch.h"

#include <algorithm>

#include "TeskDebug/Exception.h"
#include "minbox/basearea/BaseAreaScores.h"
#include "minbox/bound/BoxBound.h"
#include "minbox/call/SearchCall.h"
#include "minbox/fit/BoxFit.h"
#include "minbox/fit/FaceWorkspace.h"
#include "minbox/fit/OfferBox.h"
#include "minbox/workers/FaceWorkers.h"

namespace Tesk::minbox {
namespace {

/// Searches faces for the best box along their normals. Threads share it.
class DirectionSearch {
 public:
    /// The working memory of one thread, and the best box that it found.
    struct Worker {
        FaceWorkspace workspace;
        std::optional<BoxCandidate> best;
    };

    DirectionSearch(const SearchHull& hull, BaseAreaKey key)
        : m_hull(hull), m_key(key), m_bound(hull, BoxMeasure::kSmallestSide) {}

    void searchFace(int face, Worker& worker) const {
        const Vector& direction = m_hull.normal(face);
        if (!canBeBetter(direction, worker.best)) return;
        FaceWorkspace& workspace = worker.workspace;
        const auto rangeAlong = [&](const Vector& origin, const Vector& along) {
            return workspace.heights.rangeAlong(origin, along);
        };
        const auto makeBox = [&] {
            return m_key == BaseAreaKey::kScore ? leastBaseBox(workspace.calipers, rangeAlong)
                                                : lowestBox(workspace.calipers, rangeAlong);
        };
        const auto remeasure = [&](BoxCandidate& box) {
            measureAgain(m_hull.points().constants(), m_key, box);
        };
        offerOver(
            direction, workspace.silhouette.along(face), workspace.calipers, makeBox,
            [&](const BoxCandidate& box) { return keyOf(box); }, remeasure, worker.best);
    }

    void merge(const std::optional<BoxCandidate>& found, std::optional<BoxCandidate>& best) const {
        const auto key = [&](const BoxCandidate& box) { return keyOf(box); };
        if (found && isBetter(*found, best, key)) best = found;
    }

 private:
    float keyOf(const BoxCandidate& box) const {
        return m_key == BaseAreaKey::kScore ? box.score : box.height;
    }

    bool canBeBetter(const Vector& direction, const std::optional<BoxCandidate>& best) const {
        // More than what rounding to float does to a key.
        constexpr float kRounding = 1.000001f;
        if (!best || isBeyondFloat(direction)) return true;
        const auto limit = static_cast<double>(std::max(keyOf(*best), 0.0f) * kRounding);
        return m_key == BaseAreaKey::kScore ? !m_bound.isAbove(limit, direction)
                                            : !(m_bound.heightAlong(direction) > limit);
    }

    /// Ranges are rounded to float before they are divided by the lengths of their axes, which go
    /// with the square of the direction's length: along a very short direction their bits may get
    /// lost, and a box may seem smaller than it is.
    bool isBeyondFloat(const Vector& direction) const {
        constexpr double kMinRange = 1e-8;
        return !(direction.GetLength() * m_hull.points().diagonal() > kMinRange);
    }

    const SearchHull& m_hull;
    BaseAreaKey m_key;
    BoxBound m_bound;
};

OrientedBox3 search(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points,
                    Operation operation) {
    SearchCall call(impl, n, points, operation);
    call.startProgress(call.hull().faceCount());
    if (!call.hull().hasFaces()) return call.lowDimensionBoxOrNone();
    try {
        const std::optional<BoxCandidate> best = searchDirections(impl, call.hull());
        return best ? call.boxOf(*best) : noBox();
    } catch (const Tesk::AbortException& abort) {
        throw Tesk::AbortException(abort);  // a copy, without what the callback derived from it
    }
}

}  // namespace

std::optional<BoxCandidate> searchDirections(MinBoundingBoxImpl& impl, const SearchHull& hull) {
    TESK_ASSERT(hull.hasFaces() && impl.baseAreaMode != impl.heightMode);
    const DirectionSearch search(hull,
                                 impl.baseAreaMode ? BaseAreaKey::kScore : BaseAreaKey::kHeight);
    const std::vector<FaceRange> ranges = splitFaces(hull.faceCount(), impl.threadCount);
    std::vector<DirectionSearch::Worker> workers;
    workers.reserve(ranges.size());
    for (std::size_t t = 0; t < ranges.size(); ++t) {
        workers.push_back({FaceWorkspace(hull, impl.pointCount), std::nullopt});
    }
    if (ranges.size() == 1) {
        for (int face = 0; face < hull.faceCount(); ++face) {
            if (impl.callback) impl.progress->step();
            search.searchFace(face, workers[0]);
        }
        return workers[0].best;
    }
    std::optional<BoxCandidate> best;
    const auto work = [&](std::size_t t) {
        for (int face = ranges[t].first; face < ranges[t].last; ++face) {
            search.searchFace(face, workers[t]);
        }
    };
    runWorkers(
        ranges.size(), work, [&](std::size_t t) { search.merge(workers[t].best, best); }, [] {});
    return best;
}

OrientedBox3 searchLeastBaseArea(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points) {
    return search(impl, n, points, Operation::kSmallestSide);
}

OrientedBox3 searchLeastHeight(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points) {
    return search(impl, n, points, Operation::kHeight);
}

}  // namespace Tesk::minbox

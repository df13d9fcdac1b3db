#include "VolumeSearch.h"

#include <new>
#include <stdexcept>
#include <system_error>

#include "Calipers.h"
#include "EdgeSearch.h"
#include "FaceWorkers.h"
#include "HeightFinder.h"
#include "LowDimensionBox.h"
#include "OfferBox.h"
#include "Silhouette.h"
#include "TeskDebug/Exception.h"

namespace {

const char* const kAborting = "Aborting...";

/// The working memory of one thread, and the best box of its faces.
struct FaceWorker {
    FaceWorker(const MinBoundingBoxImpl& impl, const SearchHull& hull)
        : silhouette(impl, hull.normals(), hull.links()),
          calipers(impl),
          heights(impl, hull.links()) {
        calipers.reserve(hull.hull().getVertices().size());
    }

    Silhouette silhouette;
    Calipers calipers;
    HeightFinder heights;
    VolumeCandidate best;
};

double volumeKey(const VolumeCandidate& box) {
    return box.volume;
}

void searchFace(const MinBoundingBoxImpl& impl, const SearchHull& hull, int face,
                FaceWorker& worker) {
    const Vector& normal = hull.normals()[static_cast<std::size_t>(face)];
    const auto makeBox = [&] {
        const CaliperRect rect = worker.calipers.minRect();
        const Vector& base = worker.calipers.point(rect.support[CaliperRect::kBase]);
        VolumeCandidate box;
        layOver(impl, rect, worker.calipers, normal, worker.heights.rangeAlong(base, normal), box);
        return box;
    };
    const auto remeasure = [](VolumeCandidate& box) { box.volume = volumeOf(box); };
    offerOver(impl, normal, worker.silhouette.along(face), worker.calipers, makeBox, volumeKey,
              remeasure, worker.best);
}

void searchOnThisThread(MinBoundingBoxImpl& impl, const SearchHull& hull, FaceWorker& worker) {
    for (int face = 0; face < hull.faceCount(); ++face) {
        if (impl.callback && impl.progress->isOwnedByThisThread()) impl.progress->step();
        searchFace(impl, hull, face, worker);
    }
}

/// The body of a worker thread: reports every face, and stops at the first abort.
void searchRange(MinBoundingBoxImpl& impl, const SearchHull& hull, const FaceRange& range,
                 std::atomic<bool>& isAborted, FaceWorker& worker) {
    try {
        for (int face = range.first; face < range.last && !isAborted; ++face) {
            impl.progress->step();
            searchFace(impl, hull, face, worker);
        }
    } catch (const Tesk::AbortException&) {
        isAborted = true;
    }
}

/// The edge search on a thread of its own, joined however the scope ends.
class EdgeThread {
 public:
    EdgeThread(const MinBoundingBoxImpl& impl, std::atomic<bool>& isAborted, VolumeCandidate& best)
        : m_isAborted(isAborted), m_thread([this, &impl, &best] {
              try {
                  searchEdges(impl, m_isAborted, best);
              } catch (...) {
                  m_failure = std::current_exception();
                  m_isAborted = true;
              }
          }) {}

    ~EdgeThread() {
        if (!m_thread.joinable()) return;
        m_isAborted = true;
        m_thread.join();
    }

    /// Waits for the end; throws what the search threw.
    void join() {
        m_thread.join();
        if (m_failure) std::rethrow_exception(m_failure);
    }

 private:
    std::atomic<bool>& m_isAborted;
    std::exception_ptr m_failure;
    std::thread m_thread;  // last: it uses the others
};

void searchBesideEachOther(MinBoundingBoxImpl& impl, const SearchHull& hull,
                           VolumeCandidate& faceBest, VolumeCandidate& edgeBest) {
    std::atomic<bool> isAborted = false;
    EdgeThread edges(impl, isAborted, edgeBest);
    try {
        searchFaces(impl, hull, isAborted, faceBest);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::system_error&) {
        throw;
    } catch (...) {
        isAborted = true;
        edges.join();
        throw Tesk::AbortException(kAborting);
    }
    edges.join();
    if (isAborted) throw Tesk::AbortException(kAborting);
}

void searchAfterEachOther(MinBoundingBoxImpl& impl, const SearchHull& hull,
                          VolumeCandidate& faceBest, VolumeCandidate& edgeBest) {
    std::atomic<bool> isAborted = false;
    searchEdges(impl, isAborted, edgeBest);
    searchFaces(impl, hull, isAborted, faceBest);
}

}  // namespace

void searchFaces(MinBoundingBoxImpl& impl, const SearchHull& hull, std::atomic<bool>& isAborted,
                 VolumeCandidate& best) {
    const std::vector<FaceRange> ranges = splitFaces(hull.faceCount(), impl.threadCount);
    std::vector<FaceWorker> workers;
    workers.reserve(ranges.size());
    for (std::size_t t = 0; t < ranges.size(); ++t) workers.emplace_back(impl, hull);
    const auto merge = [&](std::size_t t) {
        if (workers[t].best.volume != impl.unset &&
            isBetter(impl, workers[t].best, best, volumeKey)) {
            best = workers[t].best;
        }
    };
    if (ranges.size() == 1) {
        searchOnThisThread(impl, hull, workers[0]);
        merge(0);
        return;
    }
    runWorkers(
        ranges.size(),
        [&](std::size_t t) { searchRange(impl, hull, ranges[t], isAborted, workers[t]); }, merge,
        [&] { isAborted = true; });
    if (isAborted) throw Tesk::AbortException(kAborting);
}

OrientedBox3 searchLeastVolume(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points) {
    impl.caliperFlag = false;
    impl.baseAreaMode = false;
    impl.heightMode = false;
    const SearchHull hull(impl, n, points);
    impl.pointCount = hullVertexCount(impl);
    const int steps = hull.faceCount() + static_cast<int>(impl.hullEdges->size());
    impl.progress = std::make_unique<ProgressRecord>(0, steps, impl.callback);
    if (!hull.hasFaces()) return lowDimensionBox(impl);
    VolumeCandidate faceBest;
    VolumeCandidate edgeBest;
    if (impl.concurrentEdges) {
        searchBesideEachOther(impl, hull, faceBest, edgeBest);
    } else {
        searchAfterEachOther(impl, hull, faceBest, edgeBest);
    }
    if (edgeBest.volume != impl.unset && isBetter(impl, edgeBest, faceBest, volumeKey))
        faceBest = edgeBest;
    return faceBest.volume == impl.unset ? noBox() : toOrientedBox(impl, faceBest);
}

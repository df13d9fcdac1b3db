#include "minbox/volume/VolumeSearch.h"

#include <new>
#include <stdexcept>
#include <system_error>

#include "TeskDebug/Exception.h"
#include "minbox/edges/EdgeSearch.h"
#include "minbox/fit/LowDimensionBox.h"
#include "minbox/fit/OfferBox.h"
#include "minbox/volume/FaceSearch.h"
#include "minbox/workers/FaceWorkers.h"

namespace {

const char* const kAborting = "Aborting...";

double volumeKey(const VolumeCandidate& box) {
    return box.volume;
}

/// The body of a worker thread: reports every face, and stops at the first abort.
void workUntilAborted(MinBoundingBoxImpl& impl, std::atomic<bool>& isAborted,
                      FaceSearch::Worker& worker) {
    try {
        worker.run([&] {
            if (isAborted) return false;
            impl.progress->step();
            return true;
        });
    } catch (const Tesk::AbortException&) {
        isAborted = true;
    }
}

/// The edge search on a thread of its own, joined however the scope ends.
class EdgeThread {
 public:
    EdgeThread(const MinBoundingBoxImpl& impl, const SearchHull& hull, const BoxBound& bound,
               std::atomic<bool>& isAborted, const VolumeLimit& limit, VolumeCandidate& best)
        : m_isAborted(isAborted), m_thread([this, &impl, &hull, &bound, &limit, &best] {
              try {
                  searchEdges(impl, hull, bound, m_isAborted, limit, best);
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
    VolumeLimit limit;
    const BoxBound bound(impl, hull);
    // Before the edges: they wait for nothing, but have less to do once a box is known.
    FaceSearch faces(impl, hull, bound, limit);
    EdgeThread edges(impl, hull, bound, isAborted, limit, edgeBest);
    try {
        searchFaces(impl, faces, isAborted, faceBest);
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
    // The faces first: with their box at hand, hardly a triple of edges is worth a look.
    std::atomic<bool> isAborted = false;
    VolumeLimit limit;
    const BoxBound bound(impl, hull);
    FaceSearch faces(impl, hull, bound, limit);
    searchFaces(impl, faces, isAborted, faceBest);
    searchEdges(impl, hull, bound, isAborted, limit, edgeBest);
}

}  // namespace

void searchFaces(MinBoundingBoxImpl& impl, FaceSearch& search, std::atomic<bool>& isAborted,
                 VolumeCandidate& best) {
    const std::vector<FaceRange> ranges = splitFaces(search.hull().faceCount(), impl.threadCount);
    std::vector<FaceSearch::Worker> workers;
    workers.reserve(ranges.size());
    for (std::size_t t = 0; t < ranges.size(); ++t) workers.emplace_back(search);
    if (workers.size() == 1) {
        workers[0].run([&] {
            if (impl.callback && impl.progress->isOwnedByThisThread()) impl.progress->step();
            return true;
        });
    } else {
        runWorkers(
            workers.size(), [&](std::size_t t) { workUntilAborted(impl, isAborted, workers[t]); },
            [](std::size_t) {}, [&] { isAborted = true; });
        if (isAborted) throw Tesk::AbortException(kAborting);
    }
    best = search.best(workers, ranges);
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

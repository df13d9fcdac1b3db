#include "minbox/volume/VolumeSearch.h"

#include <exception>
#include <new>
#include <system_error>
#include <thread>

#include "minbox/call/SearchCall.h"
#include "minbox/edges/EdgeSearch.h"
#include "minbox/fit/BoxFit.h"
#include "minbox/fit/OfferBox.h"
#include "minbox/workers/FaceWorkers.h"
#include "minbox/workers/WorkerAbort.h"

namespace Tesk::minbox {
namespace {

/// The best boxes of the two searches.
struct Found {
    std::optional<VolumeCandidate> onFace;
    std::optional<VolumeCandidate> alongEdges;
};

/// The edge search on a thread of its own, which is joined however the scope ends.
class EdgeThread {
 public:
    EdgeThread(const SearchHull& hull, const BoxBound& bound, std::atomic<bool>& isAborted,
               const VolumeLimit& limit)
        : m_isAborted(isAborted), m_thread([this, &hull, &bound, &limit] {
              try {
                  m_best = searchEdges(hull, bound, m_isAborted, limit);
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

    EdgeThread(const EdgeThread&) = delete;
    EdgeThread& operator=(const EdgeThread&) = delete;

    /// Waits for the end. Returns the best box, or throws what the search threw.
    const std::optional<VolumeCandidate>& join() {
        m_thread.join();
        if (m_failure) std::rethrow_exception(m_failure);
        return m_best;
    }

 private:
    std::atomic<bool>& m_isAborted;
    std::optional<VolumeCandidate> m_best;
    std::exception_ptr m_failure;
    std::thread m_thread;  // last: it uses the others
};

Found searchConcurrently(MinBoundingBoxImpl& impl, const SearchHull& hull) {
    std::atomic<bool> isAborted = false;
    VolumeLimit limit;
    const BoxBound bound(hull);
    // Bounding the faces waits for nothing, and the edge search has less to do once the face
    // search has found a box: so this comes before the thread.
    FaceSearch faces(hull, bound, limit, impl.threadCount);
    EdgeThread edges(hull, bound, isAborted, limit);
    Found found;
    try {
        found.onFace = searchFaces(impl, faces, isAborted);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::system_error&) {
        throw;
    } catch (...) {
        // Any other exception of the callback is an abort, too.
        isAborted = true;
        edges.join();
        throwAborted();
    }
    found.alongEdges = edges.join();
    throwIfAborted(isAborted);
    return found;
}

Found searchSequentially(MinBoundingBoxImpl& impl, const SearchHull& hull) {
    // Faces first: once their box is known, the edge search passes over almost everything.
    std::atomic<bool> isAborted = false;
    VolumeLimit limit;
    const BoxBound bound(hull);
    FaceSearch faces(hull, bound, limit, impl.threadCount);
    Found found;
    found.onFace = searchFaces(impl, faces, isAborted);
    found.alongEdges = searchEdges(hull, bound, isAborted, limit);
    return found;
}

}  // namespace

std::optional<VolumeCandidate> searchFaces(MinBoundingBoxImpl& impl, FaceSearch& search,
                                           std::atomic<bool>& isAborted) {
    TESK_ASSERT(impl.progress != nullptr);
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
        const auto work = [&](std::size_t t) {
            workUntilAborted(isAborted, [&] {
                workers[t].run([&] { return !isAborted && impl.progress->step(); });
            });
        };
        runWorkers(
            workers.size(), work, [](std::size_t) {}, [&] { isAborted = true; });
        throwIfAborted(isAborted);
    }
    return search.best(workers, ranges);
}

OrientedBox3 searchLeastVolume(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points) {
    SearchCall call(impl, n, points, Operation::kVolume);
    const SearchHull& hull = call.hull();
    call.startProgress(hull.faceCount() + static_cast<int>(impl.hullEdges->size()));
    if (!hull.hasFaces()) return call.lowDimensionBoxOrNone();
    const Found found =
        impl.concurrentEdges ? searchConcurrently(impl, hull) : searchSequentially(impl, hull);
    const auto& [onFace, alongEdges] = found;
    const bool areEdgesBetter = alongEdges && isBetter(*alongEdges, onFace, volumeKey);
    const auto& best = areEdgesBetter ? alongEdges : onFace;
    return best ? call.boxOf(*best) : noBox();
}

}  // namespace Tesk::minbox

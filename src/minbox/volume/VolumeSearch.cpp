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

/// The two searches of a call, and what they share.
struct Searches {
    Searches(const SearchHull& searched, std::uint32_t threadCount)
        : hull(searched), bound(searched), faces(searched, bound, limit, threadCount) {}

    std::optional<VolumeCandidate> searchAlongEdges() const {
        return searchEdges(hull, bound, isAborted, limit);
    }

    const SearchHull& hull;
    std::atomic<bool> isAborted = false;
    VolumeLimit limit;
    BoxBound bound;
    FaceSearch faces;
};

/// The best boxes of the two searches.
struct Found {
    std::optional<VolumeCandidate> onFace;
    std::optional<VolumeCandidate> alongEdges;
};

/// The edge search on a thread of its own, which is joined however the scope ends.
class EdgeThread {
 public:
    explicit EdgeThread(Searches& searches)
        : m_isAborted(searches.isAborted), m_thread([this, &searches] {
              try {
                  m_best = searches.searchAlongEdges();
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

Found searchConcurrently(MinBoundingBoxImpl& impl, Searches& searches) {
    EdgeThread edges(searches);
    Found found;
    try {
        found.onFace = searchFaces(impl, searches.faces, searches.isAborted);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::system_error&) {
        throw;
    } catch (...) {
        // Any other exception of the callback is an abort, too.
        searches.isAborted = true;
        edges.join();
        throwAborted();
    }
    found.alongEdges = edges.join();
    throwIfAborted(searches.isAborted);
    return found;
}

/// Faces first: once their box is known, the edge search skips almost everything.
Found searchSequentially(MinBoundingBoxImpl& impl, Searches& searches) {
    Found found;
    found.onFace = searchFaces(impl, searches.faces, searches.isAborted);
    found.alongEdges = searches.searchAlongEdges();
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
    Searches searches(hull, impl.threadCount);
    const auto [onFace, alongEdges] = impl.concurrentEdges ? searchConcurrently(impl, searches)
                                                           : searchSequentially(impl, searches);
    const bool areEdgesBetter = alongEdges && isBetter(*alongEdges, onFace, volumeKey);
    const auto& best = areEdgesBetter ? alongEdges : onFace;
    return best ? call.boxOf(*best) : noBox();
}

}  // namespace Tesk::minbox

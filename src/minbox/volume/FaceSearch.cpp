#include "minbox/volume/FaceSearch.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "minbox/bound/DirectionOrder.h"
#include "minbox/fit/OfferBox.h"

namespace Tesk::minbox {
namespace {

/// Whether a box is smaller than the best one or, if they are equal, on a lower face.
bool wins(const VolumeCandidate& box, int face, const std::optional<VolumeCandidate>& best,
          int bestFace) {
    const bool isTie = best && box.volume == best->volume;
    return isTie ? face < bestFace : isBetter(box, best, volumeKey);
}

}  // namespace

FaceSearch::FaceSearch(const SearchHull& hull, const BoxBound& bound, VolumeLimit& limit,
                       std::uint32_t threadCount)
    : m_hull(hull),
      m_bound(bound),
      m_limit(limit),
      m_known(static_cast<std::size_t>(hull.faceCount())),
      m_faces(static_cast<std::size_t>(hull.faceCount())) {
    TESK_ASSERT(hull.hasFaces());
    boundFaces(threadCount);
    orderFaces();
}

/// A first bound for each face; if there are many faces, on all threads.
void FaceSearch::boundFaces(std::uint32_t threadCount) {
    constexpr int kFacesWorthThreads = 4096;
    const auto boundRange = [this](const FaceRange& range) {
        for (int face = range.first; face < range.last; ++face) {
            m_known[static_cast<std::size_t>(face)].volume =
                m_bound.quickBound(m_hull.normal(face));
        }
    };
    const int count = m_hull.faceCount();
    const std::vector<FaceRange> ranges =
        splitFaces(count, count < kFacesWorthThreads ? 1 : threadCount);
    if (ranges.size() == 1) {
        boundRange(ranges[0]);
        return;
    }
    runWorkers(
        ranges.size(), [&](std::size_t t) { boundRange(ranges[t]); }, [](std::size_t) {}, [] {});
}

/// Orders faces by direction, so that each has much in common with the one before. Puts the most
/// promising ones first: a good box found early lets the search skip most of the others.
void FaceSearch::orderFaces() {
    constexpr std::size_t kPromisingFaces = 8;
    std::iota(m_faces.begin(), m_faces.end(), 0);
    orderByDirection(m_hull.normals(), m_faces);
    std::vector<int> promising(std::min(kPromisingFaces, m_faces.size()));
    const auto volume = [&](int face) { return m_known[static_cast<std::size_t>(face)].volume; };
    std::partial_sort_copy(m_faces.begin(), m_faces.end(), promising.begin(), promising.end(),
                           [&](int a, int b) { return volume(a) < volume(b); });
    std::stable_partition(m_faces.begin(), m_faces.end(), [&](int face) {
        return std::find(promising.begin(), promising.end(), face) != promising.end();
    });
}

/// The next faces in the order; none if all are taken.
std::span<const int> FaceSearch::takeFaces() {
    constexpr std::size_t kFacesAtOnce = 8;
    const std::size_t first = std::min(m_taken.fetch_add(kFacesAtOnce), m_faces.size());
    return std::span(m_faces).subspan(first, std::min(kFacesAtOnce, m_faces.size() - first));
}

/// Also raises the face's bound.
bool FaceSearch::canHoldTheBest(int face) {
    double& known = m_known[static_cast<std::size_t>(face)].volume;
    const double limit = m_limit.get();
    if (known > limit) return false;
    if (limit < std::numeric_limits<double>::infinity()) {
        known = std::max(known, m_bound.boundAbove(limit, m_hull.normal(face)));
    }
    return !(known > limit);
}

FaceSearch::Worker::Worker(FaceSearch& search)
    : m_search(search), m_workspace(search.m_hull, search.m_hull.points().count()) {}

/// The box over the outline that is set in the calipers.
VolumeCandidate FaceSearch::Worker::makeBox() {
    const CaliperRect rect = m_workspace.calipers.minRect();
    return {frameOver(rect, m_workspace.calipers, m_workspace.heightOver(rect))};
}

void FaceSearch::Worker::searchFace(int face) {
    Known& known = m_search.m_known[static_cast<std::size_t>(face)];
    const Outline& outline = m_workspace.silhouette.along(face);
    known.state = Known::State::kNoBox;
    if (outline.size() < 3) return;
    m_workspace.calipers.set(m_search.m_hull.normal(face), outline);
    VolumeCandidate box = makeBox();
    known = {box.volume, Known::State::kBox};
    if (box.volume != box.volume || !hasOrthogonalAxes(box)) {
        m_search.m_isPassNeeded = true;
        return;
    }
    if (!wins(box, face, m_best, m_bestFace)) return;
    if (checkFrame(m_search.m_hull.points(), box) != FrameState::kSound) {
        m_search.m_isPassNeeded = true;
        return;
    }
    m_best = box;
    m_bestFace = face;
    m_search.m_limit.lowerTo(std::max(box.volume, 0.0));
}

std::optional<VolumeCandidate> FaceSearch::best(std::span<Worker> workers,
                                                std::span<const FaceRange> ranges) const {
    TESK_ASSERT(!workers.empty());
    std::optional<VolumeCandidate> best;
    if (m_isPassNeeded) {
        for (const FaceRange& range : ranges) {
            const std::optional<VolumeCandidate> found = pass(workers.front(), range);
            if (found && isBetter(*found, best, volumeKey)) best = found;
        }
        return best;
    }
    int bestFace = 0;
    for (const Worker& worker : workers) {
        if (!worker.m_best || !wins(*worker.m_best, worker.m_bestFace, best, bestFace)) continue;
        best = worker.m_best;
        bestFace = worker.m_bestFace;
    }
    return best;
}

/// Visits the faces of a range in ascending order; searches again those that may have the best box.
std::optional<VolumeCandidate> FaceSearch::pass(Worker& worker, const FaceRange& range) const {
    const auto remeasure = [](VolumeCandidate& box) { box.volume = volumeOf(box); };
    std::optional<VolumeCandidate> best;
    for (int face = range.first; face < range.last; ++face) {
        const Known& known = m_known[static_cast<std::size_t>(face)];
        if (known.state == Known::State::kNoBox) continue;
        if (best && known.volume >= best->volume) continue;
        offerOver(
            m_hull.normal(face), worker.m_workspace.silhouette.along(face),
            worker.m_workspace.calipers, [&] { return worker.makeBox(); }, volumeKey, remeasure,
            best);
    }
    return best;
}

}  // namespace Tesk::minbox

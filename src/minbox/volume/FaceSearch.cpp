#include "minbox/volume/FaceSearch.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "minbox/bound/DirectionOrder.h"
#include "minbox/fit/OfferBox.h"

namespace {

double volumeKey(const VolumeCandidate& box) {
    return box.volume;
}

}  // namespace

FaceSearch::FaceSearch(const MinBoundingBoxImpl& impl, const SearchHull& hull,
                       const BoxBound& bound, VolumeLimit& limit)
    : m_impl(impl),
      m_hull(hull),
      m_bound(bound),
      m_limit(limit),
      m_known(static_cast<std::size_t>(hull.faceCount())),
      m_faces(static_cast<std::size_t>(hull.faceCount())) {
    boundFaces();
    orderFaces();
}

/// A first bound for each face; where they are many, on all threads.
void FaceSearch::boundFaces() {
    constexpr int kMany = 4096;
    const auto boundRange = [this](const FaceRange& range) {
        for (int face = range.first; face < range.last; ++face) {
            m_known[static_cast<std::size_t>(face)].volume = m_bound.roughly(normal(face));
        }
    };
    const int count = m_hull.faceCount();
    const std::vector<FaceRange> ranges = splitFaces(count, count < kMany ? 1 : m_impl.threadCount);
    if (ranges.size() == 1) {
        boundRange(ranges[0]);
        return;
    }
    runWorkers(
        ranges.size(), [&](std::size_t t) { boundRange(ranges[t]); }, [](std::size_t) {}, [] {});
}

/// By direction, so that a face has much in common with the one before. But first the most
/// promising: a good box found early lets most others be passed over.
void FaceSearch::orderFaces() {
    constexpr std::size_t kFew = 8;
    std::iota(m_faces.begin(), m_faces.end(), 0);
    orderByDirection(m_hull.normals(), m_faces);
    std::vector<int> promising(std::min(kFew, m_faces.size()));
    const auto volume = [&](int face) { return m_known[static_cast<std::size_t>(face)].volume; };
    std::partial_sort_copy(m_faces.begin(), m_faces.end(), promising.begin(), promising.end(),
                           [&](int a, int b) { return volume(a) < volume(b); });
    std::stable_partition(m_faces.begin(), m_faces.end(), [&](int face) {
        return std::find(promising.begin(), promising.end(), face) != promising.end();
    });
}

/// The next few; none where all are taken.
std::span<const int> FaceSearch::takeFaces() {
    constexpr std::size_t kFew = 8;
    const std::size_t first = std::min(m_taken.fetch_add(kFew), m_faces.size());
    return std::span(m_faces).subspan(first, std::min(kFew, m_faces.size() - first));
}

/// Tightens the face's bound on the way.
bool FaceSearch::canHoldTheBest(int face) {
    double& known = m_known[static_cast<std::size_t>(face)].volume;
    const double limit = m_limit.get();
    if (known > limit) return false;
    if (limit < std::numeric_limits<double>::infinity()) {
        known = std::max(known, m_bound.against(limit, normal(face)));
    }
    return !(known > limit);
}

FaceSearch::Worker::Worker(FaceSearch& search)
    : m_search(search),
      m_silhouette(search.m_impl, search.m_hull.normals(), search.m_hull.links()),
      m_calipers(search.m_impl),
      m_heights(search.m_impl, search.m_hull.links()) {
    m_calipers.reserve(search.m_hull.hull().getVertices().size());
}

VolumeCandidate FaceSearch::Worker::makeBox(int face) {
    const Vector& normal = m_search.normal(face);
    const CaliperRect rect = m_calipers.minRect();
    const Vector& base = m_calipers.point(rect.support[CaliperRect::kBase]);
    VolumeCandidate box;
    layOver(m_search.m_impl, rect, m_calipers, normal, m_heights.rangeAlong(base, normal), box);
    return box;
}

void FaceSearch::Worker::look(int face) {
    const MinBoundingBoxImpl& impl = m_search.m_impl;
    Known& known = m_search.m_known[static_cast<std::size_t>(face)];
    const Outline& outline = m_silhouette.along(face);
    known.state = Known::State::kNoBox;
    if (outline.size() < 3) return;
    m_calipers.set(m_search.normal(face), outline);
    VolumeCandidate box = makeBox(face);
    known = {box.volume, Known::State::kBox};
    if (box.volume != box.volume || !hasOrthogonalAxes(box)) {
        m_search.m_isPassNeeded = true;
        return;
    }
    const bool isBest = m_best.volume == impl.unset || box.volume < m_best.volume ||
                        (box.volume == m_best.volume && face < m_bestFace);
    if (!isBest) return;
    if (secure(impl, box) != FrameState::kSound) {
        m_search.m_isPassNeeded = true;
        return;
    }
    m_best = box;
    m_bestFace = face;
    m_search.m_limit.lowerTo(std::max(box.volume, 0.0));
}

void FaceSearch::Worker::offer(int face, VolumeCandidate& best) {
    const auto remeasure = [](VolumeCandidate& box) { box.volume = volumeOf(box); };
    offerOver(
        m_search.m_impl, m_search.normal(face), m_silhouette.along(face), m_calipers,
        [&] { return makeBox(face); }, volumeKey, remeasure, best);
}

VolumeCandidate FaceSearch::best(std::span<Worker> workers,
                                 std::span<const FaceRange> ranges) const {
    VolumeCandidate best;
    if (m_isPassNeeded) {
        for (const FaceRange& range : ranges) {
            const VolumeCandidate found = pass(workers.front(), range);
            if (found.volume != m_impl.unset && isBetter(m_impl, found, best, volumeKey)) {
                best = found;
            }
        }
        return best;
    }
    int bestFace = 0;
    for (const Worker& worker : workers) {
        if (worker.m_best.volume == m_impl.unset) continue;
        const bool isBest = best.volume == m_impl.unset || worker.m_best.volume < best.volume ||
                            (worker.m_best.volume == best.volume && worker.m_bestFace < bestFace);
        if (!isBest) continue;
        best = worker.m_best;
        bestFace = worker.m_bestFace;
    }
    return best;
}

/// Goes over the faces of a range again, in ascending order; only those that may become the best,
/// or whose frame is none, are looked at.
VolumeCandidate FaceSearch::pass(Worker& worker, const FaceRange& range) const {
    VolumeCandidate best;
    for (int face = range.first; face < range.last; ++face) {
        const Known& known = m_known[static_cast<std::size_t>(face)];
        if (known.state == Known::State::kNoBox) continue;
        const bool isWorse = best.volume != m_impl.unset && known.volume >= best.volume;
        if (!isWorse) worker.offer(face, best);
    }
    return best;
}

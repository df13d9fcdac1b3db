#include "FaceSearch.h"

#include <algorithm>
#include <numeric>

#include "OfferBox.h"

namespace {

double volumeKey(const VolumeCandidate& box) {
    return box.volume;
}

}  // namespace

FaceSearch::FaceSearch(const MinBoundingBoxImpl& impl, const SearchHull& hull,
                       const VolumeBound& bound, VolumeLimit& limit)
    : m_impl(impl),
      m_hull(hull),
      m_bound(bound),
      m_limit(limit),
      m_silhouette(impl, hull.normals(), hull.links()),
      m_calipers(impl),
      m_heights(impl, hull.links()) {
    m_calipers.reserve(hull.hull().getVertices().size());
}

void FaceSearch::start(const FaceRange& range) {
    m_range = range;
    m_known.assign(static_cast<std::size_t>(range.last - range.first), Known());
    for (int face = range.first; face < range.last; ++face) {
        known(face).volume = m_bound.along(m_hull.normals()[static_cast<std::size_t>(face)]);
    }
    m_isPassNeeded = false;
    m_best = VolumeCandidate();
}

std::vector<int> FaceSearch::facesInOrder() const {
    std::vector<int> faces(m_known.size());
    std::iota(faces.begin(), faces.end(), m_range.first);
    orderByDirection(m_hull.normals(), faces);
    return faces;
}

VolumeCandidate FaceSearch::makeBox(int face) {
    const Vector& normal = m_hull.normals()[static_cast<std::size_t>(face)];
    const CaliperRect rect = m_calipers.minRect();
    const Vector& base = m_calipers.point(rect.support[CaliperRect::kBase]);
    VolumeCandidate box;
    layOver(m_impl, rect, m_calipers, normal, m_heights.rangeAlong(base, normal), box);
    return box;
}

/// A good box found early lets most other faces be passed over.
void FaceSearch::lookAtMostPromising() {
    constexpr std::size_t kFew = 8;
    std::vector<int> faces(m_known.size());
    std::iota(faces.begin(), faces.end(), m_range.first);
    const auto end = faces.begin() + static_cast<std::ptrdiff_t>(std::min(kFew, faces.size()));
    std::partial_sort(faces.begin(), end, faces.end(),
                      [&](int a, int b) { return known(a).volume < known(b).volume; });
    for (auto face = faces.begin(); face != end; ++face) {
        if (canHoldTheBest(*face)) look(*face);
    }
}

bool FaceSearch::canHoldTheBest(int face) {
    const Known& what = known(face);
    return what.state == Known::State::kNotLookedAt && !(what.volume > m_limit.get());
}

void FaceSearch::look(int face) {
    const Outline& outline = m_silhouette.along(face);
    known(face).state = Known::State::kNoBox;
    if (outline.size() < 3) return;
    m_calipers.set(m_hull.normals()[static_cast<std::size_t>(face)], outline);
    VolumeCandidate box = makeBox(face);
    known(face) = {box.volume, Known::State::kBox};
    if (box.volume != box.volume || !hasOrthogonalAxes(box)) {
        m_isPassNeeded = true;
        return;
    }
    const bool isBest = m_best.volume == m_impl.unset || box.volume < m_best.volume ||
                        (box.volume == m_best.volume && face < m_bestFace);
    if (!isBest) return;
    if (secure(m_impl, box) != FrameState::kSound) {
        m_isPassNeeded = true;
        return;
    }
    m_best = box;
    m_bestFace = face;
    m_limit.lowerTo(box.volume);
}

/// Goes over the faces again, in ascending order; only those that may become the best, or whose
/// frame is none, are looked at again.
void FaceSearch::pass() {
    m_best = VolumeCandidate();
    for (int face = m_range.first; face < m_range.last; ++face) {
        const Known& what = known(face);
        if (what.state == Known::State::kNoBox) continue;
        const bool isWorse = m_best.volume != m_impl.unset && what.volume >= m_best.volume;
        if (!isWorse) offer(face);
    }
}

void FaceSearch::offer(int face) {
    const auto remeasure = [](VolumeCandidate& box) { box.volume = volumeOf(box); };
    offerOver(
        m_impl, m_hull.normals()[static_cast<std::size_t>(face)], m_silhouette.along(face),
        m_calipers, [&] { return makeBox(face); }, volumeKey, remeasure, m_best);
}

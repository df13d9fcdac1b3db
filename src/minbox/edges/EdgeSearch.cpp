#include "minbox/edges/EdgeSearch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>

#include "minbox/edges/ClassWidths.h"
#include "minbox/edges/DirectionIndex.h"
#include "minbox/edges/EdgeDirections.h"
#include "minbox/edges/OrthogonalTriples.h"
#include "minbox/hull/HeightFinder.h"

namespace {

/// The edges at a right angle to a class that have a further edge at a right angle to themselves,
/// and those further edges.
struct EdgePlane {
    EdgePlane(const EdgeDirections& directions, const DirectionIndex& index, int pole) {
        const OrthogonalPlane plane(directions, index, pole);
        for (std::size_t place = 0; place < plane.classes().size(); ++place) {
            std::vector<int> further;
            plane.forEachPartner(place, [&](int other) {
                if (!directions.areOrthogonal(plane.classes()[place], other)) return;
                const auto others = directions.edges(other);
                further.insert(further.end(), others.begin(), others.end());
            });
            if (further.empty()) continue;
            std::sort(further.begin(), further.end());
            const int direction = plane.classes()[place];
            const auto members = directions.edges(direction);
            edges.insert(edges.end(), members.begin(), members.end());
            partners.emplace(direction, std::move(further));
        }
        std::sort(edges.begin(), edges.end());
    }

    std::vector<int> edges;                              ///< ascending
    std::unordered_map<int, std::vector<int>> partners;  ///< by class, ascending
};

/// Pairs of edges, each of two different ones. All in one block, which is given back at once
/// however many there are.
class PairSet {
 public:
    void clear() {
        m_slots.clear();
        m_count = 0;
    }

    /// False where the pair is there already.
    bool insert(int j, int k) {
        if (2 * (m_count + 1) > m_slots.size()) grow();
        const std::uint64_t pair =
            static_cast<std::uint64_t>(j) << 32 | static_cast<std::uint64_t>(k);
        std::uint64_t& slot = slotFor(pair);
        if (slot == pair) return false;
        slot = pair;
        ++m_count;
        return true;
    }

 private:
    static constexpr std::uint64_t kFree = 0;  // of no pair of different edges

    /// Where the pair is, or can be put.
    std::uint64_t& slotFor(std::uint64_t pair) {
        const std::size_t last = m_slots.size() - 1;
        auto slot = static_cast<std::size_t>(pair * 0x9e3779b97f4a7c15u >> 20) & last;
        while (m_slots[slot] != kFree && m_slots[slot] != pair) slot = (slot + 1) & last;
        return m_slots[slot];
    }

    void grow() {
        constexpr std::size_t kFirst = 64;
        std::vector<std::uint64_t> old(std::max(kFirst, 2 * m_slots.size()), kFree);
        old.swap(m_slots);
        for (const std::uint64_t pair : old) {
            if (pair != kFree) slotFor(pair) = pair;
        }
    }

    std::vector<std::uint64_t> m_slots;  ///< a power of two of them, at most half of them taken
    std::size_t m_count = 0;
};

/// One pass over the triples whose first edge is of some classes.
///
/// What follows a found pair (j, k) depends on the pair alone, not on the first edge that led to
/// it: the vector product of the two has taken that edge's place. So a first edge is done as soon
/// as it leads to a pair that an earlier one led to.
class TriplePass {
 public:
    TriplePass(const MinBoundingBoxImpl& impl, const EdgeDirections& directions,
               const DirectionIndex& index, HeightFinder& heights, ClassWidths& widths,
               const std::atomic<bool>& isAborted, const VolumeLimit& limit)
        : m_impl(impl),
          m_directions(directions),
          m_index(index),
          m_heights(heights),
          m_widths(widths),
          m_isAborted(isAborted),
          m_limit(limit),
          m_origin(hullPoint(impl, impl.hullTriangles->front()[0])),
          m_ranges(static_cast<std::size_t>(directions.edgeCount())),
          m_hasRange(static_cast<std::size_t>(directions.edgeCount()), false) {}

    VolumeCandidate run(const std::vector<bool>& isPole) {
        m_best = VolumeCandidate();
        m_seen.clear();
        for (int i = 0; i < m_directions.edgeCount() && !m_isAborted; ++i) {
            const int pole = m_directions.classOf(i);
            if (isPole[static_cast<std::size_t>(pole)]) followFirst(i, pole);
        }
        return m_best;
    }

 private:
    const EdgePlane& planeOf(int pole) {
        std::unique_ptr<EdgePlane>& plane = m_planes[pole];
        if (!plane) plane = std::make_unique<EdgePlane>(m_directions, m_index, pole);
        return *plane;
    }

    /// All pairs j < k beyond the first edge, up to one that was seen before.
    void followFirst(int first, int pole) {
        const EdgePlane& plane = planeOf(pole);
        Vector third = m_directions.vector(first);
        auto j = std::upper_bound(plane.edges.begin(), plane.edges.end(), first);
        for (; j != plane.edges.end() && !m_isAborted; ++j) {
            const Vector& second = m_directions.vector(*j);
            if ((second | third) != m_impl.zero) continue;
            const std::vector<int>& partners = plane.partners.at(m_directions.classOf(*j));
            auto k = std::upper_bound(partners.begin(), partners.end(), *j);
            for (; k != partners.end() && !m_isAborted; ++k) {
                const Vector& last = m_directions.vector(*k);
                if ((last | second) != m_impl.zero || (last | third) != m_impl.zero) continue;
                if (!m_seen.insert(*j, *k)) return;
                third = last * second;
                if (canBeBetter(pole, *j, *k)) consider(*j, *k, third);
            }
        }
    }

    /// The hull's range along the third axis. Many pairs of edges, of a part whose curves are cut
    /// into equal steps, have the very same.
    const Range& rangeAcross(const Vector& third) {
        constexpr std::size_t kMost = 1 << 12;
        if (m_acrossRanges.size() == kMost) m_acrossRanges.clear();
        const auto [place, isNew] = m_acrossRanges.try_emplace({third.x, third.y, third.z});
        if (isNew) place->second = m_heights.rangeAlong(m_origin, third);
        return place->second;
    }

    /// Makes the box along edges k and j the best where its volume is less. Turns the third axis
    /// round where the three are left-handed.
    void consider(int j, int k, Vector& third) {
        VolumeCandidate box = boxAlong(j, k, third);
        if (!isBetter(box)) return;
        const FrameState state = secure(m_impl, box);
        if (state == FrameState::kDropped) return;
        if (state == FrameState::kRetaken) {
            box.volume = volumeAlong(box);
            if (!isBetter(box)) return;
        }
        if ((box.axes[0] | (box.axes[1] * box.axes[2])) < m_impl.zero) {
            third = {-third.x, -third.y, -third.z};
            box.axes[2] = third;
        }
        m_best = box;
    }

    bool canBeBetter(int pole, int j, int k) {
        const double bound =
            m_widths.volumeBound(pole, m_directions.classOf(j), m_directions.classOf(k));
        return bound <= m_limit.get() && (m_best.volume == m_impl.unset || bound <= m_best.volume);
    }

    bool isBetter(const VolumeCandidate& box) const {
        return box.volume < m_limit.get() &&
               (m_best.volume == m_impl.unset || m_best.volume > box.volume);
    }

    VolumeCandidate boxAlong(int j, int k, const Vector& third) {
        VolumeCandidate box;
        box.origin = m_origin;
        box.axes = {m_directions.vector(k), m_directions.vector(j), third};
        box.squaredLengths[0] = box.axes[0] | box.axes[0];
        box.squaredLengths[1] = box.axes[1] | box.axes[1];
        box.squaredLengths[2] = box.squaredLengths[0] * box.squaredLengths[1];
        box.ranges = {rangeAlongEdge(k), rangeAlongEdge(j), rangeAcross(third)};
        box.volume = volumeAlong(box);
        return box;
    }

    /// The third axis is as long as the product of the others.
    static double volumeAlong(const BoxFrame& box) {
        return (box.ranges[0].length() / box.squaredLengths[0]) *
               (box.ranges[1].length() / box.squaredLengths[1]) * box.ranges[2].length();
    }

    const Range& rangeAlongEdge(int edge) {
        const auto e = static_cast<std::size_t>(edge);
        if (!m_hasRange[e]) {
            m_ranges[e] = m_heights.rangeAlong(m_origin, m_directions.vector(edge));
            m_hasRange[e] = true;
        }
        return m_ranges[e];
    }

    const MinBoundingBoxImpl& m_impl;
    const EdgeDirections& m_directions;
    const DirectionIndex& m_index;
    HeightFinder& m_heights;
    ClassWidths& m_widths;
    const std::atomic<bool>& m_isAborted;
    const VolumeLimit& m_limit;
    Vector m_origin;
    std::vector<Range> m_ranges;  ///< along each edge, where m_hasRange says so
    std::vector<bool> m_hasRange;
    std::unordered_map<int, std::unique_ptr<EdgePlane>> m_planes;
    std::map<std::array<double, 3>, Range> m_acrossRanges;
    PairSet m_seen;
    VolumeCandidate m_best;
};

}  // namespace

void searchEdges(const MinBoundingBoxImpl& impl, const SearchHull& hull, const BoxBound& bound,
                 const std::atomic<bool>& isAborted, const VolumeLimit& limit,
                 VolumeCandidate& best) {
    const EdgeDirections directions(impl, isAborted);
    if (isAborted) return;
    const DirectionIndex index(directions.units());
    HeightFinder heights(impl, hull.links());
    ClassWidths widths(impl, directions, heights);
    const std::vector<ClassTriple> triples =
        findTriples(directions, widths, index, bound, isAborted, limit);
    TriplePass pass(impl, directions, index, heights, widths, isAborted, limit);
    std::vector<bool> isPole(directions.units().size(), false);
    // Only triples whose bound the best box does not undercut can hold a better one: take those of
    // low bound, at least twice as many each time, until the rest cannot.
    std::size_t taken = 0;
    while (taken < triples.size() && !isAborted) {
        std::size_t count = std::max<std::size_t>(2 * taken, 1);
        const double volume = best.volume == impl.unset
                                  ? triples[std::min(count, triples.size()) - 1].volumeBound
                                  : best.volume;
        const double most = std::min(volume, limit.get());
        count = taken;
        while (count < triples.size() && triples[count].volumeBound <= most) ++count;
        if (count == taken) break;
        for (; taken < count; ++taken) {
            for (const int c : triples[taken].classes) isPole[static_cast<std::size_t>(c)] = true;
        }
        best = pass.run(isPole);
    }
}

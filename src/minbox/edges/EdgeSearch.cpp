#include "minbox/edges/EdgeSearch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>

#include "minbox/edges/ClassWidths.h"
#include "minbox/edges/DirectionIndex.h"
#include "minbox/edges/EdgeDirections.h"
#include "minbox/edges/OrthogonalTriples.h"
#include "minbox/fit/OfferBox.h"
#include "minbox/hull/HeightFinder.h"

namespace Tesk::minbox {
namespace {

/// The edges orthogonal to a class, the pole, that have partners: edges orthogonal to both.
struct EdgePlane {
    EdgePlane(const EdgeDirections& directions, const DirectionIndex& index, int pole) {
        const OrthogonalPlane plane(directions, index, pole);
        for (std::size_t place = 0; place < plane.classes().size(); ++place) {
            const int direction = plane.classes()[place];
            std::vector<int> found;
            plane.forEachPartner(place, [&](int other) {
                if (!directions.areOrthogonal(direction, other)) return;
                const auto others = directions.edges(other);
                found.insert(found.end(), others.begin(), others.end());
            });
            if (found.empty()) continue;
            std::sort(found.begin(), found.end());
            const auto members = directions.edges(direction);
            edges.insert(edges.end(), members.begin(), members.end());
            partners.emplace(direction, std::move(found));
        }
        std::sort(edges.begin(), edges.end());
    }

    std::vector<int> edges;                              ///< ascending
    std::unordered_map<int, std::vector<int>> partners;  ///< by class, ascending
};

/// A set of pairs of different edges: a hash table in one block of memory, which is freed quickly
/// however many there are.
class PairSet {
 public:
    void clear() {
        m_slots.clear();
        m_count = 0;
    }

    /// Returns false if the pair is in the set already.
    bool insert(int j, int k) {
        TESK_ASSERT(j != k && j >= 0 && k >= 0);
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
    static constexpr std::uint64_t kFree = 0;  // not a pair of different edges

    /// The slot that holds the pair, or else the free slot for it.
    std::uint64_t& slotFor(std::uint64_t pair) {
        const std::size_t last = m_slots.size() - 1;
        auto slot = static_cast<std::size_t>(pair * 0x9e3779b97f4a7c15u >> 20) & last;
        while (m_slots[slot] != kFree && m_slots[slot] != pair) slot = (slot + 1) & last;
        return m_slots[slot];
    }

    void grow() {
        constexpr std::size_t kFirstSize = 64;
        std::vector<std::uint64_t> old(std::max(kFirstSize, 2 * m_slots.size()), kFree);
        old.swap(m_slots);
        for (const std::uint64_t pair : old) {
            if (pair != kFree) slotFor(pair) = pair;
        }
    }

    std::vector<std::uint64_t> m_slots;  ///< a power of two, at most half of them taken
    std::size_t m_count = 0;
};

/// Visits the triples whose first edge belongs to chosen classes.
///
/// Once a pair (j, k) is found, its vector product replaces the first edge. What follows therefore
/// depends on the pair alone, and a first edge is done as soon as it reaches a pair that an earlier
/// one has reached.
class TriplePass {
 public:
    TriplePass(const SearchHull& hull, const EdgeDirections& directions,
               const DirectionIndex& index, HeightFinder& heights, ClassWidths& widths,
               const std::atomic<bool>& isAborted, const VolumeLimit& limit)
        : m_points(hull.points()),
          m_zero(m_points.constants().zero),
          m_directions(directions),
          m_index(index),
          m_heights(heights),
          m_widths(widths),
          m_isAborted(isAborted),
          m_limit(limit),
          m_origin(m_points[hull.hull().getTriangles().front()[0]]),
          m_ranges(static_cast<std::size_t>(directions.edgeCount())) {}

    /// @param isPole  by class, whether its edges come first in a triple
    std::optional<VolumeCandidate> run(const std::vector<bool>& isPole) {
        m_best.reset();
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

    /// Visits the pairs j < k after the first edge, up to one that was seen before.
    void followFirst(int first, int pole) {
        const EdgePlane& plane = planeOf(pole);
        Vector third = m_directions.vector(first);
        auto j = std::upper_bound(plane.edges.begin(), plane.edges.end(), first);
        for (; j != plane.edges.end() && !m_isAborted; ++j) {
            const Vector& second = m_directions.vector(*j);
            if ((second | third) != m_zero) continue;
            const std::vector<int>& partners = plane.partners.at(m_directions.classOf(*j));
            auto k = std::upper_bound(partners.begin(), partners.end(), *j);
            for (; k != partners.end() && !m_isAborted; ++k) {
                const Vector& last = m_directions.vector(*k);
                if ((last | second) != m_zero || (last | third) != m_zero) continue;
                if (!m_seen.insert(*j, *k)) return;
                third = last * second;
                if (canBeBetter(pole, *j, *k)) consider(*j, *k, third);
            }
        }
    }

    /// The hull's range along the third axis. In a part whose curves are divided into equal steps,
    /// many pairs of edges have the same third axis.
    const Range& rangeAcross(const Vector& third) {
        constexpr std::size_t kMaxRanges = 1 << 12;
        if (m_acrossRanges.size() == kMaxRanges) m_acrossRanges.clear();
        const auto [place, isNew] = m_acrossRanges.try_emplace({third.x, third.y, third.z});
        if (isNew) place->second = m_heights.rangeAlong(m_origin, third);
        return place->second;
    }

    /// Makes the box along edges k and j the best if it is smaller; then reverses the third axis if
    /// the three are left-handed.
    void consider(int j, int k, Vector& third) {
        VolumeCandidate box = boxAlong(j, k, third);
        if (!isBest(box)) return;
        const FrameState state = checkFrame(m_points, box);
        if (state == FrameState::kDropped) return;
        if (state == FrameState::kRemeasured) {
            box.volume = volumeAlong(box);
            if (!isBest(box)) return;
        }
        if ((box.axes[0] | (box.axes[1] * box.axes[2])) < m_zero) {
            third = {-third.x, -third.y, -third.z};
            box.axes[2] = third;
        }
        m_best = box;
    }

    bool canBeBetter(int pole, int j, int k) {
        const double bound =
            m_widths.volumeBound(pole, m_directions.classOf(j), m_directions.classOf(k));
        return bound <= m_limit.get() && (!m_best || bound <= m_best->volume);
    }

    bool isBest(const VolumeCandidate& box) const {
        return box.volume < m_limit.get() && isBetter(box, m_best, volumeKey);
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

    /// The volume of a box whose third axis is as long as the product of the other two.
    static double volumeAlong(const BoxFrame& box) {
        return (box.ranges[0].length() / box.squaredLengths[0]) *
               (box.ranges[1].length() / box.squaredLengths[1]) * box.ranges[2].length();
    }

    const Range& rangeAlongEdge(int edge) {
        std::optional<Range>& range = m_ranges[static_cast<std::size_t>(edge)];
        if (!range) range = m_heights.rangeAlong(m_origin, m_directions.vector(edge));
        return *range;
    }

    const HullPoints& m_points;
    const double m_zero;
    const EdgeDirections& m_directions;
    const DirectionIndex& m_index;
    HeightFinder& m_heights;
    ClassWidths& m_widths;
    const std::atomic<bool>& m_isAborted;
    const VolumeLimit& m_limit;
    Vector m_origin;
    std::vector<std::optional<Range>> m_ranges;  ///< along each edge, once it was asked for
    std::unordered_map<int, std::unique_ptr<EdgePlane>> m_planes;
    std::map<std::array<double, 3>, Range> m_acrossRanges;
    PairSet m_seen;
    std::optional<VolumeCandidate> m_best;
};

}  // namespace

std::optional<VolumeCandidate> searchEdges(const SearchHull& hull, const BoxBound& bound,
                                           const std::atomic<bool>& isAborted,
                                           const VolumeLimit& limit) {
    TESK_ASSERT(hull.hasFaces());
    std::optional<VolumeCandidate> best;
    const EdgeDirections directions(hull, isAborted);
    if (isAborted) return best;
    const DirectionIndex index(directions.units());
    HeightFinder heights(hull);
    ClassWidths widths(hull.points(), directions, heights);
    const std::vector<ClassTriple> triples =
        findTriples(directions, widths, index, bound, isAborted, limit);
    TriplePass pass(hull, directions, index, heights, widths, isAborted, limit);
    std::vector<bool> isPole(directions.units().size(), false);
    // Only a triple whose bound does not exceed the best volume can have a better box. Each round
    // adds those of lowest bound, at least doubling their number, until no other can have one.
    std::size_t taken = 0;
    while (taken < triples.size() && !isAborted) {
        const std::size_t next = std::min(std::max<std::size_t>(2 * taken, 1), triples.size());
        const double volume = best ? best->volume : triples[next - 1].volumeBound;
        const double most = std::min(volume, limit.get());
        const std::size_t before = taken;
        for (; taken < triples.size() && triples[taken].volumeBound <= most; ++taken) {
            for (const int c : triples[taken].classes) isPole[static_cast<std::size_t>(c)] = true;
        }
        if (taken == before) break;
        best = pass.run(isPole);
    }
    return best;
}

}  // namespace Tesk::minbox

#include "orient/sampling/TriangleRectTree.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

#include "TeskCommon/Assert.h"

namespace Tesk::orient {
namespace {

constexpr std::uint32_t kLeafSize = 8;

}  // namespace

/// The source of pivots: the upper bits of a linear congruential generator.
class TriangleRectTree::Pivots {
 public:
    /// A number below `end`, which is not 0.
    std::uint32_t below(std::uint32_t end) {
        TESK_ASSERT(end > 0);
        m_state = m_state * 1664525u + 1013904223u;
        return (m_state >> 8) % end;
    }

 private:
    std::uint32_t m_state = 1;
};

void Rect::extend(const Rect& other) {
    minX = std::min(minX, other.minX);
    maxX = std::max(maxX, other.maxX);
    minY = std::min(minY, other.minY);
    maxY = std::max(maxY, other.maxY);
}

TriangleRectTree::TriangleRectTree(std::vector<TriangleRect> entries)
    : m_entries(std::move(entries)), m_order(m_entries.size()) {
    TESK_ASSERT(m_entries.size() <= std::numeric_limits<std::uint32_t>::max());
    std::iota(m_order.begin(), m_order.end(), 0u);
    m_nodes.reserve(m_entries.size() / 2 + 1);
    m_nodes.emplace_back();
    Pivots pivots;
    // A previous axis of 2 makes the root split by y.
    build(0, 0, static_cast<std::uint32_t>(m_order.size()), /*previousAxis=*/2, pivots);
}

void TriangleRectTree::build(std::uint32_t node, std::uint32_t lo, std::uint32_t hi,
                             int previousAxis, Pivots& pivots) {
    if (hi - lo <= kLeafSize) {
        makeLeaf(m_nodes[node], lo, hi);
        return;
    }
    const int axis = (previousAxis - 1) & 1;
    const std::uint32_t mid = (lo + hi) / 2;
    selectMedian(lo, mid, hi, axis, pivots);
    const auto left = static_cast<std::uint32_t>(m_nodes.size());
    m_nodes.resize(m_nodes.size() + 2);
    build(left, lo, mid, axis, pivots);
    build(left + 1, mid, hi, axis, pivots);
    Rect rect = m_nodes[left].rect;
    rect.extend(m_nodes[left + 1].rect);
    m_nodes[node] = {.rect = rect, .first = left, .count = 2, .isLeaf = false};
}

void TriangleRectTree::makeLeaf(Node& node, std::uint32_t lo, std::uint32_t hi) const {
    node.first = lo;
    node.count = hi - lo;
    for (std::uint32_t i = lo; i < hi; ++i) node.rect.extend(m_entries[m_order[i]].rect);
}

/// The coordinate by which entries are ordered: x for axis 0, y for 1.
double TriangleRectTree::centroid(std::uint32_t position, int axis) const {
    const UPoint2<float>& p = m_entries[m_order[position]].centroid;
    return static_cast<double>(axis == 0 ? p.x : p.y);
}

/// Quickselect. The pivot reaches its final position and leaves the range, so the range shrinks at
/// every step whatever the centroids are. The search stops when the median is the last position of
/// the range, even if the range is not sorted: the tree relies on the sizes of the halves, not on
/// their order.
void TriangleRectTree::selectMedian(std::uint32_t lo, std::uint32_t mid, std::uint32_t hi, int axis,
                                    Pivots& pivots) {
    TESK_ASSERT(lo <= mid && mid < hi);
    while (hi - 1 != mid) {
        std::swap(m_order[lo], m_order[lo + pivots.below(hi - lo)]);
        const std::uint32_t split = partition(lo, hi, axis);
        if (mid == split) return;
        if (mid < split) {
            hi = split;
        } else {
            lo = split + 1;
        }
    }
}

/// Partitions the range around its first entry, the pivot, and returns the pivot's new position.
/// Entries equal to the pivot go to both sides. On one side, many equal centroids, such as those of
/// a vertical wall, would take quadratic time.
std::uint32_t TriangleRectTree::partition(std::uint32_t lo, std::uint32_t hi, int axis) {
    const double pivot = centroid(lo, axis);
    std::uint32_t up = lo + 1;
    std::uint32_t down = hi - 1;
    while (true) {
        while (up <= down && centroid(up, axis) < pivot) ++up;
        while (up <= down && centroid(down, axis) > pivot) --down;
        if (up >= down) break;
        std::swap(m_order[up++], m_order[down--]);
    }
    const std::uint32_t split = up - 1;
    std::swap(m_order[lo], m_order[split]);
    return split;
}

void TriangleRectTree::query(const UPoint2<float>& p, const Visitor& visitor) const {
    // A 32-bit count can be halved 32 times, and at most one node per level waits.
    std::array<std::uint32_t, 64> work;
    std::size_t waiting = 0;
    work[waiting++] = 0;
    while (waiting > 0) {
        const Node& node = m_nodes[work[--waiting]];
        if (!node.rect.contains(p)) continue;
        if (!node.isLeaf) {
            TESK_ASSERT(waiting + 2 <= work.size());
            work[waiting++] = node.first + 1;
            work[waiting++] = node.first;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            visitor(m_entries[m_order[i]].triangle);
        }
    }
}

}  // namespace Tesk::orient

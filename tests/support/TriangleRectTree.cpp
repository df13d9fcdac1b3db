#include "TriangleRectTree.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace {

constexpr std::uint32_t kLeafSize = 8;

double coordinate(const UPoint2<float>& p, int axis) {
    return static_cast<double>(axis == 0 ? p.x : p.y);
}

}  // namespace

void Rect::extend(const Rect& other) {
    minX = std::min(minX, other.minX);
    maxX = std::max(maxX, other.maxX);
    minY = std::min(minY, other.minY);
    maxY = std::max(maxY, other.maxY);
}

TriangleRectTree::TriangleRectTree(std::vector<TriangleRect> entries)
    : m_entries(std::move(entries)), m_order(m_entries.size()) {
    std::iota(m_order.begin(), m_order.end(), 0u);
    m_nodes.reserve(m_entries.size() / 2 + 1);
    m_nodes.emplace_back();
    build(0, 0, static_cast<std::uint32_t>(m_order.size()), /*previousAxis=*/2);
}

void TriangleRectTree::build(std::uint32_t node, std::uint32_t lo, std::uint32_t hi,
                             int previousAxis) {
    if (hi - lo <= kLeafSize) {
        m_nodes[node].first = lo;
        m_nodes[node].count = hi - lo;
        for (std::uint32_t i = lo; i < hi; ++i)
            m_nodes[node].rect.extend(m_entries[m_order[i]].rect);
        return;
    }
    const int axis = (previousAxis - 1) & 1;
    const std::uint32_t mid = (lo + hi) / 2;
    selectMedian(lo, mid, hi, axis);
    const auto left = static_cast<std::uint32_t>(m_nodes.size());
    m_nodes.resize(m_nodes.size() + 2);
    build(left, lo, mid, axis);
    build(left + 1, mid, hi, axis);
    Rect rect = m_nodes[left].rect;
    rect.extend(m_nodes[left + 1].rect);
    m_nodes[node] = {.rect = rect, .first = left, .count = 2, .isLeaf = false};
}

// Quickselect with random pivots. The pivot takes its place at the split and leaves the range, so
// the range shrinks at every step whatever the coordinates are. Entries equal to the pivot are
// dealt to both sides alternately by swapping, which keeps many equal centroids linear.
void TriangleRectTree::selectMedian(std::uint32_t lo, std::uint32_t mid, std::uint32_t hi,
                                    int axis) {
    const auto key = [&](std::uint32_t i) {
        return coordinate(m_entries[m_order[i]].centroid, axis);
    };
    while (hi - lo > 1) {
        m_random = m_random * 1664525u + 1013904223u;
        std::swap(m_order[lo], m_order[lo + (m_random >> 8) % (hi - lo)]);
        const double pivot = key(lo);
        std::uint32_t up = lo + 1;
        std::uint32_t down = hi - 1;
        while (true) {
            while (up <= down && key(up) < pivot) ++up;
            while (up <= down && key(down) > pivot) --down;
            if (up >= down) break;
            std::swap(m_order[up++], m_order[down--]);
        }
        const std::uint32_t split = up - 1;
        std::swap(m_order[lo], m_order[split]);
        if (mid == split) return;
        if (mid < split) {
            hi = split;
        } else {
            lo = split + 1;
        }
    }
}

void TriangleRectTree::query(const UPoint2<float>& p, const Visitor& visitor) const {
    // Halving ranges of 32-bit counts go at most 32 levels deep, each leaving one node behind.
    std::array<std::uint32_t, 64> work;
    std::size_t waiting = 0;
    work[waiting++] = 0;
    while (waiting > 0) {
        const Node& node = m_nodes[work[--waiting]];
        if (!node.rect.contains(p)) continue;
        if (!node.isLeaf) {
            work[waiting++] = node.first + 1;
            work[waiting++] = node.first;
            continue;
        }
        for (std::uint32_t i = node.first; i < node.first + node.count; ++i) {
            visitor(m_entries[m_order[i]].triangle);
        }
    }
}

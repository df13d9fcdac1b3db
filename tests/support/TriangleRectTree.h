#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "TeskDataBasic/UPoint2.h"

/// An axis-aligned rectangle, bounds included. Default-constructed, it is empty.
struct Rect {
    static constexpr float kFar = std::numeric_limits<float>::max();

    float minX = kFar;
    float maxX = -kFar;
    float minY = kFar;
    float maxY = -kFar;

    bool contains(const UPoint2<float>& p) const {
        return minX <= p.x && p.x <= maxX && minY <= p.y && p.y <= maxY;
    }
    void extend(const Rect& other);
};

/// A triangle seen from above: its bounding rectangle, its centroid and its place in the mesh.
struct TriangleRect {
    Rect rect;
    UPoint2<float> centroid;
    std::int32_t triangle = 0;
};

static_assert(sizeof(TriangleRect) == 28);

/// A k-d tree over triangle rectangles, split at the median centroid alternately by y and x, with
/// at most 8 rectangles in a leaf. The pivots of the selection come from a generator that starts
/// anew with every build, so equal input gives an equal tree. Any input builds, NaN and equal
/// centroids included, in O(n log n) expected time.
class TriangleRectTree {
 public:
    using Visitor = std::function<void(int)>;

    explicit TriangleRectTree(std::vector<TriangleRect> entries);

    /// Calls visitor(triangle) for every entry of each leaf whose rectangle contains p, so for a
    /// superset of the entries whose own rectangle does. The order is unspecified.
    void query(const UPoint2<float>& p, const Visitor& visitor) const;

    /// The union of all entries' rectangles.
    const Rect& bounds() const { return m_nodes.front().rect; }

 private:
    /// An inner node's children are the two nodes from `first` on; a leaf's entries are the
    /// `count` order positions from `first` on.
    struct Node {
        Rect rect;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
        bool isLeaf = true;
    };

    void build(std::uint32_t node, std::uint32_t lo, std::uint32_t hi, int previousAxis);
    void selectMedian(std::uint32_t lo, std::uint32_t mid, std::uint32_t hi, int axis);

    std::vector<TriangleRect> m_entries;
    std::vector<std::uint32_t> m_order;
    std::vector<Node> m_nodes;
    std::uint32_t m_random = 1;
};

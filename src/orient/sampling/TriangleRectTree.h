#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "TeskDataBasic/UPoint2.h"

namespace Tesk::orient {

/// An axis-aligned rectangle that includes its bounds. Empty if default-constructed.
struct Rect {
    static constexpr float kFar = std::numeric_limits<float>::max();

    float minX = kFar;
    float maxX = -kFar;
    float minY = kFar;
    float maxY = -kFar;

    /// False for NaN.
    bool contains(const UPoint2<float>& p) const {
        return minX <= p.x && p.x <= maxX && minY <= p.y && p.y <= maxY;
    }

    /// Becomes the union of the two. Bounds that are NaN are ignored.
    void extend(const Rect& other);
};

/// A triangle seen from above: its bounding rectangle, its centroid and its index in the mesh.
struct TriangleRect {
    Rect rect;
    UPoint2<float> centroid;
    std::int32_t triangle = 0;
};

static_assert(sizeof(TriangleRect) == 28);

/// Tells which triangles may lie over a point. A k-d tree over their rectangles, split at the
/// median centroid, by y at the root and then by x and y in turn. A leaf has at most 8 rectangles.
///
/// Building takes O(n log n) expected time for any input, even if centroids are equal or NaN. It
/// sorts 32-bit indices, not the entries. Pivots come from a private generator that starts from the
/// same state each time, so equal input gives an equal tree and no other random numbers are used
/// up. A built tree never changes; any number of threads may query it.
class TriangleRectTree {
 public:
    using Visitor = std::function<void(int)>;

    /// There are fewer than 2³² entries.
    explicit TriangleRectTree(std::vector<TriangleRect> entries);

    /// Calls visitor(triangle) once for every entry of each leaf whose rectangle contains p, in the
    /// leaf's order. That includes every entry whose own rectangle contains p, and possibly others.
    /// The order of the leaves is unspecified.
    void query(const UPoint2<float>& p, const Visitor& visitor) const;

    /// The union of all entries' rectangles.
    const Rect& bounds() const { return m_nodes.front().rect; }

 private:
    class Pivots;

    /// An inner node's children are the two nodes from `first` on; a leaf's entries are the
    /// `count` order positions from `first` on.
    struct Node {
        Rect rect;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
        bool isLeaf = true;
    };

    void build(std::uint32_t node, std::uint32_t lo, std::uint32_t hi, int previousAxis,
               Pivots& pivots);
    void makeLeaf(Node& node, std::uint32_t lo, std::uint32_t hi) const;
    void selectMedian(std::uint32_t lo, std::uint32_t mid, std::uint32_t hi, int axis,
                      Pivots& pivots);
    std::uint32_t partition(std::uint32_t lo, std::uint32_t hi, int axis);
    double centroid(std::uint32_t position, int axis) const;

    std::vector<TriangleRect> m_entries;
    std::vector<std::uint32_t> m_order;  ///< positions in m_entries
    std::vector<Node> m_nodes;           ///< the root first; the children of a node side by side
};

}  // namespace Tesk::orient

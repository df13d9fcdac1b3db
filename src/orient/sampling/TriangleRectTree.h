#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "TeskDataBasic/UPoint2.h"

namespace Tesk::orient {

/// An axis-aligned rectangle, bounds included. Default-constructed, it is empty.
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

    /// Becomes the union of the two; a bound that is NaN is passed over.
    void extend(const Rect& other);
};

/// A triangle seen from above: its bounding rectangle, its centroid and its place in the mesh.
struct TriangleRect {
    Rect rect;
    UPoint2<float> centroid;
    std::int32_t triangle = 0;
};

static_assert(sizeof(TriangleRect) == 28);

/// Tells which triangles may lie over a point: a k-d tree over their rectangles, split at the
/// median centroid by y, then by x, and so on in turn, with at most 8 rectangles in a leaf.
///
/// Any input builds, centroids that are equal or NaN included, in O(n log n) expected time. The
/// build moves positions of 32 bits, not the entries. It draws its pivots from a generator of its
/// own that starts anew each time: equal input gives an equal tree, and no other random numbers
/// are touched. A built tree never changes; any number of threads may query it.
class TriangleRectTree {
 public:
    using Visitor = std::function<void(int)>;

    /// Takes the list over: moved in, it is left empty.
    explicit TriangleRectTree(std::vector<TriangleRect> entries);

    /// Calls visitor(triangle) once for every entry of each leaf whose rectangle contains p, in the
    /// leaf's order: for all entries whose own rectangle contains p, and for others beside them.
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

#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "minbox/outline/Outline.h"

namespace Tesk::minbox {

/// A rectangle around an outline, its bottom side flush with an edge.
struct CaliperRect {
    enum Side { kBase, kRight, kTop, kLeft };

    std::array<Vector, 2> axes;              ///< along the bottom side, and from it to the top
    std::array<int, 4> support{};            ///< positions of the vertices that touch the sides
    std::array<double, 2> squaredLengths{};  ///< of the axes
    double area = 0.0;                       ///< times the direction's length
    float score = -1.0f;                     ///< free for the caller
};

/// The squared sine of the angle between a side and the outline edge that leaves its support.
struct SideAngle {
    double sinSq = 0.0;
    int side = 0;
};

using SideAngles = std::array<SideAngle, 4>;

/// The indices of the entries by ascending angle; equal ones keep their order.
std::array<int, 4> sortAngles(const SideAngles& entries, int count);

/// Rectangles around a convex outline seen along a direction, by rotating calipers. Vectors are not
/// normalised, and no root is taken. Holds working memory; one per thread.
///
/// Source: G. T. Toussaint, "Solving geometric problems with the rotating calipers", IEEE MELECON
/// 1983.
class Calipers {
 public:
    /// Keeps a reference. Allocates enough for any outline of these points.
    explicit Calipers(const HullPoints& points);

    /// Chooses the outline, of three vertices or more, and the direction along which it is seen.
    void set(const Vector& direction, const Outline& outline);

    const HullPoints& points() const { return m_points; }
    const Vector& direction() const { return m_direction; }

    /// The vertex at a position.
    const Vector& corner(int position) const {
        TESK_ASSERT(position >= 0 && position < size());
        return m_corners[static_cast<std::size_t>(position)];
    }

    /// The vertex that touches a side of a rectangle.
    const Vector& support(const CaliperRect& rect, CaliperRect::Side side) const {
        return corner(rect.support[side]);
    }

    /// The rectangle whose bottom side is flush with the edge that ends at a position.
    CaliperRect edgeRect(int end) const;

    /// The angles of those sides of a rectangle whose support differs from that of the next side.
    /// Returns how many there are.
    int angles(const std::array<int, 4>& support, SideAngles& entries) const;

    /// The distance from the left to the right side times the bottom axis's length, and from
    /// bottom to top times the other axis's.
    std::array<double, 2> sideRanges(const CaliperRect& rect) const {
        return sideRanges(rect.support);
    }

    /// Calls visit(const CaliperRect&) for the rectangle on the edge that ends at position 0, and
    /// for each one that turning leads to, until a bottom vertex repeats.
    template <class Visit>
    void forEachRect(Visit visit);

    /// The rectangle of least area; of equal ones the first.
    CaliperRect minRect();

 private:
    /// An axis of a rectangle.
    struct Axis {
        Vector vector;
        double squared;
    };

    /// The axes of a rectangle on an outline edge: along the edge, and from it into the outline,
    /// both across the direction.
    using Edge = std::array<Axis, 2>;

    /// A rectangle by the positions of its supports (its axes follow from the bottom one), and its
    /// area.
    struct Stance {
        std::array<int, 4> support{};
        double area = 0.0;
    };

    int size() const { return static_cast<int>(m_corners.size()); }
    int next(int position) const { return position + 1 == size() ? 0 : position + 1; }
    double sineSquared(const std::array<int, 4>& support, std::size_t side) const;
    std::array<double, 2> sideRanges(const std::array<int, 4>& support) const;
    CaliperRect rectOn(const Stance& stance) const;
    bool turnInOrder(Stance& stance);
    bool turn(Stance& stance);
    bool standOn(std::size_t side, Stance& stance);
    template <class Visit>
    void forEachStance(Visit visit);

    const HullPoints& m_points;
    Vector m_direction;
    std::vector<Vector> m_corners;
    std::vector<Edge> m_edges;  ///< by the position where the edge ends; the first once more last
    std::vector<std::uint8_t> m_visited;
};

/// The box over a rectangle of the calipers, with their direction as its third axis, and its
/// volume.
///
/// @param height  the hull's range along the direction, from the rectangle's base vertex
BoxFrame frameOver(const CaliperRect& rect, const Calipers& calipers, const Range& height);

template <class Visit>
void Calipers::forEachStance(Visit visit) {
    const CaliperRect first = edgeRect(0);
    m_visited.assign(m_corners.size(), 0);
    m_visited[static_cast<std::size_t>(first.support[CaliperRect::kBase])] = 1;
    Stance stance{first.support, first.area};
    visit(stance);
    for (int i = 0; i < size() && turn(stance); ++i) visit(stance);
}

template <class Visit>
void Calipers::forEachRect(Visit visit) {
    forEachStance([&](const Stance& stance) { visit(rectOn(stance)); });
}

}  // namespace Tesk::minbox

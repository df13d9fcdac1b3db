#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"

/// A cyclic list of hull vertices. Seen along a direction it is a convex polygon, counter-clockwise
/// about the direction, without repeated vertices and without three in line. A position is an index
/// into it.
using Outline = std::vector<int>;

/// Drops vertices in line with their neighbours, and a last vertex that repeats the first.
void removeCollinear(const MinBoundingBoxImpl& impl, const Vector& direction, Outline& outline);

/// Drops vertices from which an edge leads so nearly along the direction that rounding decides
/// where it points across it. No box can stand on such an edge, and calipers that meet one lose
/// their way.
void removeSteep(const MinBoundingBoxImpl& impl, const Vector& direction, Outline& outline);

/// A rectangle around an outline, its bottom side flush with an edge.
struct CaliperRect {
    enum Side { kBase, kRight, kTop, kLeft };

    std::array<Vector, 2> axes;              ///< along the bottom side, and from it to the top
    std::array<int, 4> support{};            ///< positions of the vertices that touch the sides
    std::array<double, 2> squaredLengths{};  ///< of the axes
    double area = 0.0;                       ///< times the direction's length
    float score = -1.0f;                     ///< free for the caller

    bool operator==(const CaliperRect&) const = default;
};

/// The squared sine of the angle between a side and the outline edge that leaves its support.
struct SideAngle {
    double sinSq = 0.0;
    int side = 0;
};

using SideAngles = std::array<SideAngle, 4>;

/// The places of the entries by ascending angle; equal ones keep their order.
std::array<int, 4> sortAngles(const SideAngles& entries, int count);

/// Rectangles around a convex outline seen along a direction, by rotating calipers. Nothing is
/// normalised and no root is taken. Holds working memory; one per thread.
///
/// Source: G. T. Toussaint, "Solving geometric problems with the rotating calipers", IEEE MELECON
/// 1983.
class Calipers {
 public:
    /// Keeps a reference.
    explicit Calipers(const MinBoundingBoxImpl& impl) : m_impl(impl) {}

    /// Makes room for outlines of that many vertices.
    void reserve(std::size_t size);

    /// Looks at an outline along a direction. The other members speak of it until the next call.
    void set(const Vector& direction, const Outline& outline);

    /// The vertex at a position.
    const Vector& point(int position) const { return m_points[static_cast<std::size_t>(position)]; }

    /// The rectangle whose bottom side is flush with the edge that ends at a position.
    CaliperRect edgeRect(int end) const;

    /// The angles of the sides that have a vertex of their own. Returns whether there are any.
    bool angles(const CaliperRect& rect, SideAngles& entries, int& count) const;

    /// Turns the rectangle by the least angle, to the next outline edge that a side becomes flush
    /// with. Returns false, the rectangle half turned, where its bottom vertex was visited before.
    bool updateSupport(const SideAngles& entries, int count, const std::array<int, 4>& order,
                       CaliperRect& rect);

    /// The distance from the left to the right side times the bottom axis's length, and from
    /// bottom to top times the other's.
    std::array<double, 2> sideRanges(const CaliperRect& rect) const;

    /// The same as angles(), sortAngles() and updateSupport() one after the other: to the next
    /// rectangle of a run. Returns false where the run has ended.
    bool turn(CaliperRect& rect);

    /// Calls visit(CaliperRect&) for the rectangle on the edge that ends at the first position,
    /// and those that turning gives until a bottom vertex comes up again. It may change `score`.
    template <class Visit>
    void forEachRect(Visit visit);

    /// The rectangle of least area over an outline of at least three vertices; of equal ones the
    /// first.
    CaliperRect minRect();

 private:
    /// An axis of a rectangle.
    struct Axis {
        Vector vector;
        double squared;
    };

    /// An outline edge as the axes of a rectangle on it: along the edge, in the plane across the
    /// direction, and from it into the outline.
    using Edge = std::array<Axis, 2>;

    /// A rectangle, but for what follows from where it stands.
    struct Stand {
        std::array<int, 4> support{};
        double area = 0.0;
    };

    int size() const { return static_cast<int>(m_points.size()); }
    int next(int position) const { return position + 1 == size() ? 0 : position + 1; }
    double sineSquared(const std::array<int, 4>& support, std::size_t side) const;
    std::array<double, 2> sideRanges(const std::array<int, 4>& support) const;
    bool standOn(std::size_t side, Stand& stand);
    bool turn(Stand& stand);
    void setOn(const Stand& stand, CaliperRect& rect) const;
    CaliperRect rectOn(const Stand& stand) const;
    void startRun(const CaliperRect& first);

    const MinBoundingBoxImpl& m_impl;
    std::vector<Vector> m_points;
    std::vector<Edge> m_edges;  ///< each at the position where it ends; the first again at the end
    std::vector<std::uint8_t> m_visited;
};

/// Lays a frame over a rectangle, with the direction that the calipers look along as its third
/// axis, and measures its volume.
///
/// @param height  of the hull along the direction, from the rectangle's base vertex
void layOver(const MinBoundingBoxImpl& impl, const CaliperRect& rect, const Calipers& calipers,
             const Vector& direction, const Range& height, BoxFrame& frame);

template <class Visit>
void Calipers::forEachRect(Visit visit) {
    CaliperRect rect = edgeRect(0);
    startRun(rect);
    visit(rect);
    for (int i = 0; i < size(); ++i) {
        if (!turn(rect)) break;
        visit(rect);
    }
}

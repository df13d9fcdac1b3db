#pragma once

#include <array>
#include <vector>

#include "BoxCandidate.h"
#include "MinBoundingBoxImpl.h"

/// Rectangles around a convex outline seen along a direction, by rotating calipers.
///
/// An outline is a cyclic list of hull vertices, counter-clockwise about the direction, without
/// repeated vertices and without three in line; a position is an index into it. Nothing is
/// normalised and no root is taken. Source: G. T. Toussaint, "Solving geometric problems with the
/// rotating calipers", IEEE MELECON 1983.
using Outline = std::vector<int>;

/// A rectangle with its bottom side flush with an outline edge.
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

/// Drops vertices in line with their neighbours, and a last vertex that repeats the first.
void removeCollinear(const MinBoundingBoxImpl& impl, const Vector& direction, Outline& outline);

/// The rectangle whose bottom side is flush with the edge from position i0 to position i1.
CaliperRect edgeRect(const MinBoundingBoxImpl& impl, int i0, int i1, const Vector& direction,
                     const Outline& outline);

/// The angles of the sides that have a vertex of their own. Returns whether there are any.
bool angles(const MinBoundingBoxImpl& impl, const Vector& direction, const Outline& outline,
            const CaliperRect& rect, SideAngles& entries, int& count);

/// The places of the entries by ascending angle; equal ones keep their order.
std::array<int, 4> sortAngles(const SideAngles& entries, int count);

/// Turns the rectangle by the least angle, to the next outline edge that a side becomes flush with.
/// Returns false, the rectangle half turned, where its bottom vertex was visited before.
bool updateSupport(const MinBoundingBoxImpl& impl, const SideAngles& entries, int count,
                   const std::array<int, 4>& order, const Vector& direction, const Outline& outline,
                   std::vector<bool>& visited, CaliperRect& rect);

/// The distance from the left to the right side times the bottom axis's length, and from bottom to
/// top times the other's.
std::array<double, 2> sideRanges(const MinBoundingBoxImpl& impl, const Outline& outline,
                                 const CaliperRect& rect);

/// Visits the rectangle on the edge from the last position to the first, and those that turning
/// gives until a bottom vertex comes up again.
///
/// @param visited  working memory, one bit per position
/// @param visit    called with a CaliperRect&, which it may change in `score` only
template <class Visit>
void forEachRect(const MinBoundingBoxImpl& impl, const Vector& direction, const Outline& outline,
                 std::vector<bool>& visited, Visit visit) {
    const int size = static_cast<int>(outline.size());
    visited.assign(outline.size(), false);
    CaliperRect rect = edgeRect(impl, size - 1, 0, direction, outline);
    visited[static_cast<std::size_t>(rect.support[CaliperRect::kBase])] = true;
    visit(rect);
    for (int i = 0; i < size; ++i) {
        SideAngles entries{};
        int count = 0;
        if (!angles(impl, direction, outline, rect, entries, count)) break;
        const std::array<int, 4> order = sortAngles(entries, count);
        if (!updateSupport(impl, entries, count, order, direction, outline, visited, rect)) break;
        visit(rect);
    }
}

/// The rectangle of least area over an outline of at least three vertices; of equal ones the first.
CaliperRect minRect(const MinBoundingBoxImpl& impl, const Vector& direction, const Outline& outline,
                    std::vector<bool>& visited);

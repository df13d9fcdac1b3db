#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "TeskPartFiles/PartFiles.h"

namespace Tesk::files {

/// Cuts polygons in space into triangles. Keeps its buffers between calls; one per thread.
class PolygonCutter {
 public:
    using Triangle = std::array<std::int32_t, 3>;

    /// Cuts a polygon of n ≥ 3 corners, which are valid indices into `positions`, and appends its
    /// n − 2 triangles. They have the polygon's winding. Every edge of the polygon is an edge of
    /// exactly one triangle, and each of the n − 3 diagonals is shared by two, so a closed surface
    /// stays closed. This holds for any polygon, even one that crosses itself.
    ///
    /// The polygon is projected along its Newell normal (the sum of the cross products of
    /// neighbouring corners). If the projection is convex, the triangles form a fan around the
    /// first corner; otherwise ears are clipped in the order of the corners. A polygon that crosses
    /// itself may have no ear; then the corner that is closest to being one is clipped. To find an
    /// ear, a corner is tested against the reflex corners. The number of tests is limited to a
    /// hundred million for all polygons together, plus a thousand per corner; after that, corners
    /// are clipped without a test.
    void cut(std::span<const std::int32_t> corners, std::span<const PartPoint> positions,
             std::vector<Triangle>& triangles);

 private:
    /// A projected corner.
    struct Point {
        double x = 0.0;
        double y = 0.0;
        bool operator==(const Point&) const = default;
    };

    static double turn(const Point& a, const Point& b, const Point& c);
    static bool isIn(const Point& p, const Point& a, const Point& b, const Point& c);

    void project(std::span<const std::int32_t> corners, std::span<const PartPoint> positions);
    bool isStrictlyConvex() const;
    void clipEars(std::span<const std::int32_t> corners, std::vector<Triangle>& triangles);
    void link(std::size_t count);
    double turnAt(std::size_t corner) const;
    bool isEar(std::size_t corner);
    bool takeTest();
    std::size_t nextEar(std::size_t from, std::size_t left);
    std::size_t leastBad(std::size_t from);
    void clip(std::size_t corner);

    std::vector<Point> m_points;
    std::vector<std::size_t> m_before;
    std::vector<std::size_t> m_after;
    std::vector<std::size_t> m_reflex;  ///< corners that may lie in an ear; clipped ones go later
    std::vector<char> m_isReflex;
    std::size_t m_testsLeft = 0;             ///< for this polygon only
    std::size_t m_spareTests = 100'000'000;  ///< for all polygons together
};

}  // namespace Tesk::files

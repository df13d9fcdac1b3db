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

    /// Appends the n − 2 triangles of a polygon of n ≥ 3 corners: indices into `positions`, in
    /// range. Their edges are the polygon's, each once, and n − 3 diagonals, each twice, whatever
    /// the polygon looks like, so that a closed surface stays closed; they wind as it does.
    ///
    /// The polygon is looked at along its normal by Newell's method (the sum of the cross products
    /// of neighbouring corners). Seen so, a convex polygon is cut as a fan from its first corner
    /// and another one by clipping ears, in the order of the corners. Where it crosses itself there
    /// may be no ear; then a corner that comes nearest to one is clipped. Each ear is compared with
    /// the corners that do not turn left, but no more than a hundred million times over all
    /// polygons, and a thousand times per corner beyond that: what is left then is cut as it comes.
    void cut(std::span<const std::int32_t> corners, std::span<const PartPoint> positions,
             std::vector<Triangle>& triangles);

 private:
    /// A corner seen along the normal.
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
    std::vector<std::size_t> m_reflex;  ///< corners that may lie in an ear; those clipped go lazily
    std::vector<char> m_isReflex;
    std::size_t m_testsLeft = 0;  ///< of this polygon's own
    std::size_t m_spareTests = 100'000'000;
};

}  // namespace Tesk::files

#pragma once

#include <vector>

#include "TeskSDKCommonTools/Export.h"

namespace gte {

/// The exact convex hull of points in a plane.
///
/// Every turn is decided exactly, so the polygon is strictly convex: no corner repeats, and none
/// lies on the line through its neighbours. It depends on the set of points only; of equal points
/// the one with the lowest index stands for all.
///
/// Points that are not finite are left out. Collinear points give their two ends, a single point
/// itself, no points an empty polygon. Exact where coordinates stay below 1e290 and their products
/// neither overflow nor fall below 1e-290, as with all coordinates that are floats.
///
/// Cost O(n log n). Source: A. M. Andrew, "Another efficient algorithm for convex hulls in two
/// dimensions", Information Processing Letters 9 (1979); J. R. Shewchuk, "Adaptive precision
/// floating-point arithmetic and fast robust geometric predicates", DCG 18 (1997).
class TESK_TOOLS_API ConvexHull2 {
 public:
    /// @param coordinates  x and y of each point, one point after the other
    /// @param count        number of points; at most half the number of coordinates is read
    ConvexHull2(const std::vector<double>& coordinates, int count);

    /// Point indices, counter-clockwise from the corner of lowest x, then lowest y.
    const std::vector<int>& getIndices() const { return m_indices; }

 private:
    std::vector<int> m_indices;
};

}  // namespace gte

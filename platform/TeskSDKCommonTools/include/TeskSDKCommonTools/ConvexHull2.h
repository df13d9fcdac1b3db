#pragma once

#include <vector>

#include "TeskSDKCommonTools/Export.h"

namespace gte {

/// The exact convex hull of points in a plane.
///
/// Every orientation test is exact, so the polygon is strictly convex: no corner occurs twice, and
/// none lies on the line through its neighbours. It depends on the set of points only; of equal
/// points the one with the lowest index is used.
///
/// Non-finite points are ignored. Collinear points give their two ends, a single point gives
/// itself, and no points give an empty polygon. The result is exact if coordinates stay below 1e290
/// and their products neither overflow nor fall below 1e-290, which holds for all floats.
///
/// Cost O(n log n). Source: A. M. Andrew, "Another efficient algorithm for convex hulls in two
/// dimensions", Information Processing Letters 9 (1979); J. R. Shewchuk, "Adaptive precision
/// floating-point arithmetic and fast robust geometric predicates", DCG 18 (1997).
class TESK_TOOLS_API ConvexHull2 {
 public:
    /// @param coordinates  x and y of each point, one point after the other
    /// @param count        number of points; no more than half the number of coordinates is read
    ConvexHull2(const std::vector<double>& coordinates, int count);

    /// Point indices, counter-clockwise from the corner of lowest x, then lowest y.
    const std::vector<int>& getIndices() const { return m_indices; }

 private:
    std::vector<int> m_indices;
};

}  // namespace gte

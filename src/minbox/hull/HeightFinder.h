#pragma once

#include <optional>
#include <vector>

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/HullLinks.h"

/// Finds how far the hull reaches along a direction without looking at all vertices, and with the
/// bits that looking at all would give. Holds working memory; one per thread.
///
/// It climbs along edges, and then looks at every vertex that is within rounding of the highest and
/// joined to it by such vertices: on a convex hull those are all that can be the highest. Where
/// they are many, it looks at all.
class HeightFinder {
 public:
    /// Keeps references to both.
    HeightFinder(const MinBoundingBoxImpl& impl, const HullLinks& links);

    /// rangeAlong() for a hull of at least a triangle.
    Range rangeAlong(const Vector& origin, const Vector& direction);

 private:
    std::optional<double> farthest(int start, const Vector& origin, const Vector& direction,
                                   double sign);
    int climb(int vertex, const Vector& origin, const Vector& direction, double sign) const;

    double height(int vertex, const Vector& origin, const Vector& direction) const {
        return (hullPoint(m_impl, vertex) - origin) | direction;
    }

    const MinBoundingBoxImpl& m_impl;
    const HullLinks& m_links;
    double m_size;     ///< of the hull, at most
    int m_lowest = 0;  ///< where to start
    int m_highest = 0;
    int m_stamp = 0;
    std::vector<int> m_seen;  ///< per vertex, the stamp of the search that looked at it
    std::vector<int> m_pending;
};

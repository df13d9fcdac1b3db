#pragma once

#include <optional>
#include <vector>

#include "minbox/hull/SearchHull.h"

namespace Tesk::minbox {

/// Finds the hull's range along a direction without scanning all vertices, with the same bits as a
/// scan. Holds working memory; one per thread.
///
/// It climbs along edges to a summit, then visits the connected vertices around it whose heights
/// are within rounding of the greatest: on a convex hull, no other vertex can be the highest. If
/// there are many such vertices, it scans all instead.
class HeightFinder {
 public:
    /// Keeps a reference to the hull, which has faces.
    explicit HeightFinder(const SearchHull& hull);

    /// HullPoints::rangeAlong() with one of the vertices as origin.
    Range rangeAlong(const Vector& origin, const Vector& direction);

 private:
    std::optional<double> greatest(int& start, const Vector& origin, const Vector& direction,
                                   double sign);

    const HullPoints& m_points;
    const HullLinks& m_links;
    int m_lowest = 0;  ///< where the next climbs start
    int m_highest = 0;
    int m_stamp = 0;
    std::vector<int> m_visited;  ///< per vertex, the stamp of the last search that visited it
    std::vector<int> m_pending;
};

}  // namespace Tesk::minbox

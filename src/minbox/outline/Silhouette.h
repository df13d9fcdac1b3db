#pragma once

#include <cstdint>
#include <vector>

#include "minbox/hull/SearchHull.h"
#include "minbox/outline/Outline.h"

namespace Tesk::minbox {

/// Finds the outline of the hull seen along a face normal: the edges between triangles that face
/// away and triangles that do not. Holds working memory; one per thread.
///
/// There are two ways to find it. A scan over all edges in list order links the end vertices of
/// each outline edge; of several links from a vertex the last counts, and the outline starts at the
/// last link made. The scan defines the result. A walk from triangle to triangle is faster and
/// gives the same outline, provided that every triangle beside it clearly faces away or clearly
/// does not, so that rounding cannot have changed a sign. If one does not, the scan is used.
class Silhouette {
 public:
    /// Keeps references to the hull and its links.
    ///
    /// @param maxVertices  ends a scan that rounding keeps from closing
    Silhouette(const SearchHull& hull, int maxVertices)
        : Silhouette(hull, hull.links(), maxVertices) {}

    /// Uses other links than the hull's own.
    Silhouette(const SearchHull& hull, const HullLinks& links, int maxVertices);

    /// The outline's vertices, counter-clockwise about the face's normal, without those in line
    /// with their neighbours; empty if there is no outline edge. Valid until the next call.
    const Outline& along(int face);

 private:
    // A crossing is a side of a triangle that faces away whose neighbour there does not.

    double dot(int triangle) const { return m_links.normal(triangle) | m_direction; }
    bool isClearCrossing(int side) const;
    int followingBefore(int crossing) const;

    bool walkAround();
    void takeWalk();
    int findCrossing() const;
    int following(int crossing) const;

    void scanEdges();
    int sideOfHighestEdge() const;
    int highestCrossingAround(int side) const;
    bool facesAway(int triangle) const { return m_isAway[static_cast<std::size_t>(triangle)] != 0; }

    const HullPoints& m_points;
    const std::vector<gte::HullEdge>& m_edges;
    const HullLinks& m_links;
    std::size_t m_maxVertices;
    Vector m_direction;
    double m_directionLength = 0.0;
    std::vector<int> m_walk;             ///< the outline's crossings in the order of the walk
    std::vector<int> m_before;           ///< those of the last outline that was walked
    std::vector<int> m_placeBefore;      ///< by side, its index in m_before if it is there
    std::vector<std::uint8_t> m_isAway;  ///< by triangle, whether it faces away; for the scan
    Outline m_outline;
    Outline m_scanned;  ///< the outline as the scan finds it
};

}  // namespace Tesk::minbox

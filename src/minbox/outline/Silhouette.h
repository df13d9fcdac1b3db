#pragma once

#include <cstdint>
#include <vector>

#include "minbox/hull/SearchHull.h"
#include "minbox/outline/Outline.h"

namespace Tesk::minbox {

/// Finds the outline of the hull seen along a face normal: the edges between triangles that face
/// away from it and triangles that do not. Holds working memory; one per thread.
///
/// The outline is defined by a scan over all edges that links vertices in the order of the edge
/// list, where a later link replaces an earlier one; it starts where the last link was made.
/// Usually a walk from triangle to triangle finds it faster. The walk is trusted if it passes no
/// triangle seen so nearly edge-on that rounding could have turned its sign: an exactly convex hull
/// has one closed outline, and a triangle whose sign rounding has turned would be joined to it by
/// triangles just as nearly edge-on. Otherwise the scan decides.
class Silhouette {
 public:
    /// Keeps references to the hull and its links.
    ///
    /// @param maxVertices  where a scan that never comes back to its start ends
    Silhouette(const SearchHull& hull, int maxVertices)
        : Silhouette(hull, hull.links(), maxVertices) {}

    /// With other links than the hull's own.
    Silhouette(const SearchHull& hull, const HullLinks& links, int maxVertices);

    /// The outline's vertices, counter-clockwise about the face's normal, without those in line
    /// with their neighbours; empty if no edge lies on it. Valid until the next call.
    const Outline& along(int face);

 private:
    // A crossing is the side of a triangle that faces away, next to a triangle that does not.

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

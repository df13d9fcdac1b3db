#pragma once

#include <cstdint>
#include <vector>

#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/HullLinks.h"
#include "minbox/outline/Calipers.h"

/// Finds the outline of the hull seen along a face normal: the edges between triangles that face
/// away from it and those that do not. Holds working memory; one per thread.
///
/// The outline is what a scan over all edges gives that links vertices in the order of the edge
/// list, a later link taking an earlier one's place, and starts where the last link was made.
/// Mostly it is found by a walk from triangle to triangle instead. The walk is trusted where no
/// triangle beside it is seen so nearly edge-on that rounding could have turned its sign: an
/// exactly convex hull has one closed outline, and any triangle whose sign rounding has turned
/// would be joined to it by triangles just as near. Otherwise the scan decides.
class Silhouette {
 public:
    /// Keeps references to all.
    Silhouette(const MinBoundingBoxImpl& impl, const std::vector<Vector>& normals,
               const HullLinks& links);

    /// The outline's vertices, counter-clockwise about the face's normal, without those in line
    /// with their neighbours; empty where no edge lies on it. Valid until the next call.
    const Outline& along(int face);

 private:
    // A crossing is a side of a triangle that faces away, with a triangle across that does not.

    double dot(int triangle) const { return m_links.dot(triangle, m_direction); }
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

    const MinBoundingBoxImpl& m_impl;
    const std::vector<Vector>& m_normals;
    const HullLinks& m_links;
    Vector m_direction;
    double m_directionLength = 0.0;
    std::vector<int> m_walk;             ///< the outline's crossings, as the walk meets them
    std::vector<int> m_before;           ///< those of the last outline that was walked
    std::vector<int> m_placeBefore;      ///< by side, where m_before has it if it does
    std::vector<std::uint8_t> m_isAway;  ///< whether a triangle faces away, for the scan
    Outline m_outline;
    Outline m_scanned;  ///< the outline as the scan finds it
};

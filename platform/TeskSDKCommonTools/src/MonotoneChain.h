#pragma once

#include <cstddef>
#include <vector>

namespace Tesk::hull {

/// Appends the corners of the convex polygon around points in a plane, counter-clockwise from the
/// first. Points inside an edge are not corners; a single point gives none.
///
/// @param points     in ascending order
/// @param turnsLeft  whether three points turn strictly to the left
/// @param corners    receives the member `index` of each corner
template <class Points, class TurnsLeft>
void appendConvexPolygon(const Points& points, const TurnsLeft& turnsLeft,
                         std::vector<int>& corners) {
    const auto appendChain = [&](auto point, auto end) {
        Points chain;
        for (; point != end; ++point) {
            while (chain.size() >= 2 && !turnsLeft(chain[chain.size() - 2], chain.back(), *point)) {
                chain.pop_back();
            }
            chain.push_back(*point);
        }
        for (std::size_t i = 0; i + 1 < chain.size(); ++i) corners.push_back(chain[i].index);
    };
    appendChain(points.begin(), points.end());
    appendChain(points.rbegin(), points.rend());
}

}  // namespace Tesk::hull

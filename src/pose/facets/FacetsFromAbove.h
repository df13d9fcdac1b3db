#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "orient/sampling/TriangleRectTree.h"

namespace Tesk::pose {

/// A facet seen from above.
struct FacetFromAbove {
    orient::Rect rect;
    float lowest;        ///< z of the lowest corner
    std::int32_t facet;  ///< index in the mesh

    /// Whether the rectangle contains p and a corner lies below z. Without branches: the answer is
    /// unpredictable, and most often false.
    bool mayBeBelow(const UPoint2<float>& p, float z) const {
        const unsigned isInX = (rect.minX <= p.x ? 1u : 0u) & (p.x <= rect.maxX ? 1u : 0u);
        const unsigned isInY = (rect.minY <= p.y ? 1u : 0u) & (p.y <= rect.maxY ? 1u : 0u);
        return (isInX & isInY & (lowest < z ? 1u : 0u)) != 0;
    }
};

/// Facets in the cells of a grid; each lies in every cell that its rectangle touches.
class FacetGrid {
 public:
    FacetGrid() = default;

    /// @param cells  along each axis of the bounds, at least 1
    FacetGrid(const std::vector<FacetFromAbove>& facets, const orient::Rect& bounds,
              std::size_t cells);

    /// Whether test(facet) holds for a facet in the cell of a point within the bounds.
    template <class Test>
    bool anyAt(const UPoint2<float>& p, Test test) const {
        if (m_entries.empty()) return false;
        const std::size_t cell = columnAt(p.x) * m_cells + rowAt(p.y);
        const FacetFromAbove* const end = m_entries.data() + m_firsts[cell + 1];
        return std::any_of(m_entries.data() + m_firsts[cell], end, test);
    }

 private:
    std::size_t columnAt(float x) const { return cellAt(x - m_bounds.minX, m_perX); }
    std::size_t rowAt(float y) const { return cellAt(y - m_bounds.minY, m_perY); }
    std::size_t cellAt(float offset, float perUnit) const {
        const float cell = offset * perUnit;
        if (!(cell > 0.0f)) return 0;
        return cell < static_cast<float>(m_cells) ? static_cast<std::size_t>(cell) : m_cells - 1;
    }

    orient::Rect m_bounds;
    std::size_t m_cells = 1;
    float m_perX = 0.0f;  ///< columns per unit
    float m_perY = 0.0f;
    std::vector<std::uint32_t> m_firsts;    ///< of each cell, column by column, and the end
    std::vector<FacetFromAbove> m_entries;  ///< cell by cell
};

/// Facets, to be found by a point seen from above. Small ones lie in grids, each of which has cells
/// of the size of its facets: in a fine mesh, they are found there at once. The others lie in a
/// TriangleRectTree.
class FacetsFromAbove {
 public:
    explicit FacetsFromAbove(std::vector<FacetFromAbove> facets);

    /// Whether test(facet) holds for one of the facets that may be below z at p. Stops asking once
    /// it does; the order is unspecified.
    template <class Test>
    bool anyBelow(const UPoint2<float>& p, float z, Test test) const {
        if (!m_bounds.contains(p)) return false;
        const auto holds = [&](const FacetFromAbove& facet) {
            return facet.mayBeBelow(p, z) && test(facet);
        };
        for (const FacetGrid& grid : m_grids) {
            if (grid.anyAt(p, holds)) return true;
        }
        bool isFound = false;
        m_tree.query(p, [&](int place) {
            isFound = isFound || holds(m_large[static_cast<std::size_t>(place)]);
        });
        return isFound;
    }

 private:
    static constexpr std::size_t kGrids = 5;

    std::vector<orient::TriangleRect> distribute(const std::vector<FacetFromAbove>& facets);

    orient::Rect m_bounds;
    std::array<FacetGrid, kGrids> m_grids;  ///< the finest first; each halves its cells' number
    std::vector<FacetFromAbove> m_large;
    orient::TriangleRectTree m_tree;  ///< over m_large
};

}  // namespace Tesk::pose

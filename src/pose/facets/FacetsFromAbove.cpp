#include "pose/facets/FacetsFromAbove.h"

#include <algorithm>
#include <cmath>

namespace Tesk::pose {

namespace {

float perUnit(float extent, std::size_t cells) {
    return extent > 0.0f ? static_cast<float>(cells) / extent : 0.0f;
}

UPoint2<float> middleOf(const orient::Rect& rect) {
    return {(rect.minX + rect.maxX) * 0.5f, (rect.minY + rect.maxY) * 0.5f};
}

/// The size of a rectangle as a share of the bounds: that of its longer side.
float shareOf(const orient::Rect& rect, const orient::Rect& bounds) {
    const float x = (rect.maxX - rect.minX) * perUnit(bounds.maxX - bounds.minX, 1);
    const float y = (rect.maxY - rect.minY) * perUnit(bounds.maxY - bounds.minY, 1);
    return std::max(x, y);
}

}  // namespace

/// Counts the entries of each cell, and then puts them in.
FacetGrid::FacetGrid(const std::vector<FacetFromAbove>& facets, const orient::Rect& bounds,
                     std::size_t cells)
    : m_bounds(bounds),
      m_cells(cells),
      m_perX(perUnit(bounds.maxX - bounds.minX, cells)),
      m_perY(perUnit(bounds.maxY - bounds.minY, cells)) {
    if (facets.empty()) return;
    const auto forEntries = [&](auto take) {
        for (const FacetFromAbove& facet : facets) {
            const std::size_t endX = columnAt(facet.rect.maxX);
            const std::size_t endY = rowAt(facet.rect.maxY);
            for (std::size_t x = columnAt(facet.rect.minX); x <= endX; ++x) {
                for (std::size_t y = rowAt(facet.rect.minY); y <= endY; ++y) {
                    take(x * m_cells + y, facet);
                }
            }
        }
    };
    m_firsts.assign(cells * cells + 1, 0);
    forEntries([&](std::size_t cell, const FacetFromAbove&) { ++m_firsts[cell]; });
    std::uint32_t end = 0;
    for (std::uint32_t& first : m_firsts) first = end += first;
    m_entries.resize(end);
    // Each entry moves its cell's end down by one; what remains is the beginning of the cell.
    forEntries([&](std::size_t cell, const FacetFromAbove& facet) {
        m_entries[--m_firsts[cell]] = facet;
    });
}

FacetsFromAbove::FacetsFromAbove(std::vector<FacetFromAbove> facets) : m_tree(distribute(facets)) {}

/// Fills the grids; returns the entries of the tree. A facet lies in the finest grid whose cells
/// are at least as large; there it touches at most four.
std::vector<orient::TriangleRect> FacetsFromAbove::distribute(
    const std::vector<FacetFromAbove>& facets) {
    for (const FacetFromAbove& facet : facets) m_bounds.extend(facet.rect);
    // The finest grid has at most as many cells as there are facets.
    auto cells = static_cast<std::size_t>(std::sqrt(static_cast<double>(facets.size()))) + 1;
    std::array<std::vector<FacetFromAbove>, kGrids> shares;
    std::vector<orient::TriangleRect> entries;
    for (const FacetFromAbove& facet : facets) {
        float inCells = shareOf(facet.rect, m_bounds) * static_cast<float>(cells);
        std::size_t grid = 0;
        for (; grid < kGrids && !(inCells <= 1.0f); ++grid) inCells *= 0.5f;
        if (grid < kGrids) {
            shares[grid].push_back(facet);
        } else {
            entries.push_back(
                {facet.rect, middleOf(facet.rect), static_cast<std::int32_t>(m_large.size())});
            m_large.push_back(facet);
        }
    }
    for (std::size_t grid = 0; grid < kGrids; ++grid) {
        m_grids[grid] = FacetGrid(shares[grid], m_bounds, cells);
        cells = (cells + 1) / 2;
    }
    return entries;
}

}  // namespace Tesk::pose

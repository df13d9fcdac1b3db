#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace Tesk::orient {

/// What a pose needs of support. Sums over columns.
struct SupportMeasures {
    float supportVolume = 0.0f;
    float overhangArea = 0.0f;
    float projectedArea = 0.0f;
};

/// Where the column over a sample meets a triangle's plane.
struct ColumnHit {
    std::uint32_t sample;
    /// Twice the triangle, and 1 more if it overhangs.
    std::uint32_t triangle;
    float z;  ///< not finite where the triangle stands upright
};

/// Adds one column: between the ground, z = 0, and the lowest hit, and between the following pairs,
/// lies what is open below a triangle. Hits at the same height are one, that of the first triangle;
/// where they do not come in pairs then, only the column's own area counts, and where there are
/// fewer than two, nothing.
///
/// @param hits   all of one sample, in any order; left in disorder
/// @param areas  of every triangle
void measureColumn(std::span<ColumnHit> hits, const std::vector<float>& areas, float cellArea,
                   SupportMeasures& sums);

}  // namespace Tesk::orient

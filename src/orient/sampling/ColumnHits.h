#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace Tesk::orient {

/// The support that a pose needs, summed over columns.
struct SupportMeasures {
    float supportVolume = 0.0f;
    float overhangArea = 0.0f;
    float projectedArea = 0.0f;
};

/// The point at which the column over a sample meets a triangle.
struct ColumnHit {
    std::uint32_t sample;
    /// Twice the triangle's index, plus 1 if it overhangs.
    std::uint32_t triangle;
    float z;  ///< not finite if the triangle is vertical
};

/// Adds one column to the sums. Hits are counted from below: the column is outside the part from
/// the ground, z = 0, to the first hit, between the second and third, and so on. Such a stretch
/// needs support if the triangle at its upper end overhangs. Of hits at the same height, only that
/// of the triangle with the lowest index counts. If the number of hits left is odd, the column adds
/// to the projected area only. A column with fewer than two hits in all adds nothing.
///
/// @param hits   all hits of one sample, in any order; reordered, and some overwritten
/// @param areas  the area of every triangle
void measureColumn(std::span<ColumnHit> hits, const std::vector<float>& areas, float cellArea,
                   SupportMeasures& sums);

}  // namespace Tesk::orient

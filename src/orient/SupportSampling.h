#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "SampleGrid.h"
#include "TeskDataBasic/UPoint3.h"

/// A turned mesh: coordinates per vertex, three corners per triangle, and the area of each
/// triangle.
struct TurnedMesh {
    const std::vector<float>& x;
    const std::vector<float>& y;
    const std::vector<float>& z;
    const std::vector<std::array<std::int32_t, 3>>& corners;
    const std::vector<float>& areas;
};

struct SupportMeasures {
    float supportVolume = 0.0f;
    float overhangArea = 0.0f;
    float projectedArea = 0.0f;
};

/// Measures the support that the part needs, column by column of the grid: x outside, y inside,
/// which fixes the order of the sums. A triangle overhangs where its unit normal's z is below
/// −overhangCosine; the ground is z = 0.
SupportMeasures sampleSupport(const TurnedMesh& mesh, const SampleGrid& grid, float overhangCosine);

#pragma once

#include <cstddef>
#include <vector>

#include "TeskDataBasic/UBox3.h"

/// The sample coordinates along one axis, ascending: the middles of the cells.
class SampleLine {
 public:
    SampleLine() = default;

    /// Cells of size `step` side by side from `low` on, as long as a cell begins below `high`; the
    /// first always counts. None where the step is not positive; the line ends early where `step`
    /// is too small to move the coordinate.
    SampleLine(float low, float high, float step);

    std::size_t size() const { return m_middles.size(); }
    float operator[](std::size_t i) const { return m_middles[i]; }

    /// The number of samples below `value` (0 for NaN), so the first sample at or above it.
    std::size_t countBelow(float value) const;

    /// Whether a sample lies in [low, high].
    bool hasSampleIn(float low, float high) const {
        const std::size_t i = countBelow(low);
        return i < size() && m_middles[i] <= high;
    }

 private:
    std::vector<float> m_middles;
    float m_cellsPerUnit = 0.0f;
};

/// The grid of sample points under a part: about 40 square cells across the shorter side of the
/// footprint, which is widened by one unit on each side.
struct SampleGrid {
    SampleLine columns;  ///< x coordinates
    SampleLine rows;     ///< y coordinates
    float cellArea = 0.0f;
};

/// The grid under a box. It has no samples where the box is not finite, or where its size or its
/// aspect ratio (above about 500,000) is beyond what the cell counts can express.
SampleGrid makeSampleGrid(const UBox3<float>& box);

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "TeskDataBasic/UBox3.h"
#include "TurnKernels.h"

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
    const float* data() const { return m_middles.data(); }

    /// The number of samples below `value` (0 for NaN), so the first sample at or above it.
    std::size_t countBelow(float value) const;

    /// The number of samples at or below `value`.
    std::size_t countUpTo(float value) const;

    /// How to tell between which samples a value lies; none where the line has too many samples
    /// for a code, or accumulated rounding has moved them too far.
    const std::optional<SampleScale>& scale() const { return m_scale; }

 private:
    void setScale();

    std::vector<float> m_middles;
    float m_cellsPerUnit = 0.0f;
    std::optional<SampleScale> m_scale;
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

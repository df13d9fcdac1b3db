#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

#include "TeskCommon/Assert.h"
#include "TeskDataBasic/UBox3.h"
#include "orient/kernels/TurnKernels.h"

namespace Tesk::orient {

/// The sample coordinates along one axis, ascending: the middles of the cells.
class SampleLine {
 public:
    SampleLine() = default;

    /// Adjacent cells of size `step`, the first from `low` on, the others as long as they begin
    /// below `high`. There are none if `step` is not positive. The line ends early if `step` is too
    /// small to change the coordinate.
    SampleLine(float low, float high, float step);

    std::size_t size() const { return m_middles.size(); }
    float operator[](std::size_t i) const {
        TESK_ASSERT(i < size());
        return m_middles[i];
    }
    const float* data() const { return m_middles.data(); }

    /// The number of samples below `value`, which is the index of the first one at or above it; 0
    /// for NaN.
    std::size_t countBelow(float value) const {
        return count(value, [](float sample, float v) { return sample < v; });
    }

    /// The number of samples at or below `value`.
    std::size_t countUpTo(float value) const {
        return count(value, [](float sample, float v) { return sample <= v; });
    }

    /// The map from coordinates to positions among the samples. None if the line has too many
    /// samples for a code, or if accumulated rounding has moved them too far.
    const std::optional<SampleScale>& scale() const { return m_scale; }

 private:
    void setScale();

    /// The number of samples that come before a value.
    template <class ComesBefore>
    std::size_t count(float value, ComesBefore comesBefore) const {
        if (m_middles.empty() || !comesBefore(m_middles.front(), value)) return 0;
        if (comesBefore(m_middles.back(), value)) return size();
        // Accumulated rounding puts the guess slightly off; on long lines, far off.
        const float guess = (value - m_middles.front()) * m_cellsPerUnit;
        const std::size_t last = size() - 1;
        std::size_t i = guess < static_cast<float>(last) ? static_cast<std::size_t>(guess) : last;
        for (int step = 0; step < 4; ++step) {
            if (comesBefore(m_middles[i], value)) {
                ++i;
            } else if (i > 0 && !comesBefore(m_middles[i - 1], value)) {
                --i;
            } else {
                return i;
            }
        }
        const auto found =
            std::partition_point(m_middles.begin(), m_middles.end(),
                                 [&](float sample) { return comesBefore(sample, value); });
        return static_cast<std::size_t>(found - m_middles.begin());
    }

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

}  // namespace Tesk::orient

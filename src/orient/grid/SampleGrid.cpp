#include "orient/grid/SampleGrid.h"

#include <algorithm>
#include <cmath>

namespace Tesk::orient {
namespace {

/// The value truncated to a whole number, or 0 if it does not fit an int.
float truncated(float value) {
    constexpr float kTwoTo31 = 2147483648.0f;
    if (!(value > -kTwoTo31 && value < kTwoTo31)) return 0.0f;
    return static_cast<float>(static_cast<int>(value));
}

struct CellSize {
    float x;
    float y;
};

/// Square cells, a fortieth of the shorter side; the other side is then adjusted to a whole number
/// of hundredths of cells. A size that cannot be expressed comes out as 0, infinite or NaN.
CellSize cellSize(float width, float depth) {
    const float wholeWidth = truncated(width * 100.0f);
    const float wholeDepth = truncated(depth * 100.0f);
    CellSize cell{};
    if (width / depth < 1.0f) {
        cell.x = wholeWidth / 4000.0f;
        cell.y = (depth * 100.0f) / truncated(wholeDepth / cell.x);
    } else {
        cell.y = wholeDepth / 4000.0f;
        cell.x = (width * 100.0f) / truncated(wholeWidth / cell.y);
    }
    return cell;
}

bool isUsable(float step) {
    return step > 0.0f && step <= UBox3<float>::kFar;
}

}  // namespace

SampleLine::SampleLine(float low, float high, float step) {
    if (!isUsable(step)) return;
    const float half = step * 0.5f;
    // Accumulated, not indexed: the rounding of every step is part of the result.
    float x = low;
    float next = low;
    do {
        x = next;
        m_middles.push_back(x + half);
        next = x + step;
    } while (next < high && next > x);
    m_cellsPerUnit = 1.0f / step;
    setScale();
}

void SampleLine::setScale() {
    // Codes count the samples twice, in 16 bits.
    constexpr std::size_t kMaxSamples = 32767;
    if (size() > kMaxSamples || !isUsable(m_cellsPerUnit)) return;
    const auto count = static_cast<float>(size());
    float farthest = 0.0f;
    for (std::size_t i = 0; i < size(); ++i) {
        const float place = (m_middles[i] - m_middles.front()) * m_cellsPerUnit + 1.0f;
        farthest = std::max(farthest, std::fabs(place - static_cast<float>(i + 1)));
    }
    // Includes the rounding of adding and subtracting the slack.
    constexpr float kRounding = 0x1p-22f;
    const float slack = farthest + (count + 2.0f) * kRounding;
    if (!(slack < 0.25f)) return;
    m_scale = {m_middles.front(), m_cellsPerUnit, count + 0.75f, slack};
}

SampleGrid makeSampleGrid(const UBox3<float>& box) {
    constexpr float kMargin = 1.0f;
    const float x0 = box.MinX() - kMargin;
    const float x1 = box.MaxX() + kMargin;
    const float y0 = box.MinY() - kMargin;
    const float y1 = box.MaxY() + kMargin;
    const CellSize cell = cellSize(x1 - x0, y1 - y0);
    SampleGrid grid;
    if (!(x1 > x0) || !(y1 > y0) || !isUsable(cell.x) || !isUsable(cell.y)) return grid;
    grid.columns = SampleLine(x0, x1, cell.x);
    grid.rows = SampleLine(y0, y1, cell.y);
    grid.cellArea = cell.x * cell.y;
    return grid;
}

}  // namespace Tesk::orient

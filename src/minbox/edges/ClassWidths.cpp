#include "minbox/edges/ClassWidths.h"

#include <algorithm>
#include <cmath>

#include "minbox/box/BoxCandidate.h"
#include "minbox/edges/DirectionIndex.h"

namespace {

constexpr double kUnknown = -1.0;

/// Of the hull's size: what rounding can take from a width.
constexpr double kRounding = 1e-13;
/// Where classes are not orthogonal exactly, the third axis of a box, which is orthogonal to the
/// others, may be off its class by this, across the whole hull.
constexpr double kOblique = 4.0 * DirectionIndex::kTolerance;

}  // namespace

ClassWidths::ClassWidths(const MinBoundingBoxImpl& impl, const EdgeDirections& directions,
                         HeightFinder& heights)
    : m_impl(impl),
      m_directions(directions),
      m_heights(heights),
      m_widths(directions.units().size(), kUnknown) {
    double largest = 0.0;
    for (int i = 0; i < hullVertexCount(impl); ++i) {
        const Vector d = hullPoint(impl, i) - hullPoint(impl, 0);
        largest = std::max(largest, d | d);
    }
    m_size = 2.0 * std::sqrt(largest);
}

double ClassWidths::volumeBound(int a, int b, int c) {
    const bool isExact = m_directions.areOrthogonal(a, b) && m_directions.areOrthogonal(b, c) &&
                         m_directions.areOrthogonal(c, a);
    const double slack = (isExact ? kRounding : kOblique) * m_size;
    double volume = 1.0;
    for (const int direction : {a, b, c}) volume *= std::max(widthOf(direction) - slack, 0.0);
    return volume;
}

double ClassWidths::widthOf(int direction) {
    double& width = m_widths[static_cast<std::size_t>(direction)];
    if (width == kUnknown) {
        const Vector& unit = m_directions.units()[static_cast<std::size_t>(direction)];
        width = m_heights.rangeAlong(hullPoint(m_impl, 0), unit).length();
    }
    return width;
}

#include "ClassWidths.h"

#include <algorithm>
#include <cmath>

#include "BoxCandidate.h"
#include "DirectionIndex.h"

namespace {

constexpr double kUnknown = -1.0;

/// A box's third axis may be off its class by the tolerance, across the whole hull; rounding is far
/// below that.
constexpr double kRelativeSlack = 4.0 * DirectionIndex::kTolerance;

}  // namespace

ClassWidths::ClassWidths(const MinBoundingBoxImpl& impl, const EdgeDirections& directions)
    : m_impl(impl), m_directions(directions), m_widths(directions.units().size(), kUnknown) {
    double largest = 0.0;
    for (int i = 0; i < hullVertexCount(impl); ++i) {
        const Vector d = hullPoint(impl, i) - hullPoint(impl, 0);
        largest = std::max(largest, d | d);
    }
    m_slack = kRelativeSlack * std::sqrt(largest);
}

double ClassWidths::boundOf(int direction) {
    double& width = m_widths[static_cast<std::size_t>(direction)];
    if (width == kUnknown) {
        const Vector& unit = m_directions.units()[static_cast<std::size_t>(direction)];
        const Range range = rangeAlong(m_impl, hullPoint(m_impl, 0), unit);
        width = std::max(range.length() - m_slack, 0.0);
    }
    return width;
}

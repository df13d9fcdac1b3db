#include "minbox/edges/ClassWidths.h"

#include <algorithm>

#include "minbox/edges/DirectionIndex.h"

namespace Tesk::minbox {
namespace {

constexpr double kUnknown = -1.0;

/// The most that rounding can take from a width, relative to the hull's size.
constexpr double kRounding = 1e-13;
/// The same if the classes are not exactly orthogonal. The third axis of a box is orthogonal to the
/// other two, and may then deviate from its class by this much across the whole hull.
constexpr double kOblique = 4.0 * DirectionIndex::kTolerance;

}  // namespace

ClassWidths::ClassWidths(const HullPoints& points, const EdgeDirections& directions,
                         HeightFinder& heights)
    : m_points(points),
      m_directions(directions),
      m_heights(heights),
      m_widths(directions.units().size(), kUnknown) {}

double ClassWidths::volumeBound(int a, int b, int c) {
    const bool isExact = m_directions.areOrthogonal(a, b) && m_directions.areOrthogonal(b, c) &&
                         m_directions.areOrthogonal(c, a);
    const double slack = (isExact ? kRounding : kOblique) * m_points.diameterBound();
    double volume = 1.0;
    for (const int direction : {a, b, c}) volume *= std::max(widthOf(direction) - slack, 0.0);
    return volume;
}

double ClassWidths::widthOf(int direction) {
    double& width = m_widths[static_cast<std::size_t>(direction)];
    if (width == kUnknown) {
        const Vector& unit = m_directions.units()[static_cast<std::size_t>(direction)];
        width = m_heights.rangeAlong(m_points[0], unit).length();
    }
    return width;
}

}  // namespace Tesk::minbox

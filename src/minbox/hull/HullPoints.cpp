#include "minbox/hull/HullPoints.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace Tesk::minbox {

HullPoints::HullPoints(std::vector<double> coordinates, double unitLength,
                       const SearchConstants& constants)
    : m_coordinates(std::move(coordinates)), m_unitLength(unitLength), m_constants(constants) {
    TESK_ASSERT(m_coordinates.size() % 3 == 0);
    if (m_coordinates.empty()) return;
    const HullPoints& points = *this;
    const Vector first = points[0];
    Vector low = first;
    Vector high = first;
    double largest = 0.0;
    for (int i = 1; i < count(); ++i) {
        const Vector p = points[i];
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        const Vector d = p - first;
        largest = std::max(largest, d | d);
    }
    const Vector size = high - low;
    m_longestSide = std::max({size.x, size.y, size.z});
    m_diagonal = size.GetLength();
    m_diameterBound = 2.0 * std::sqrt(largest);
}

Range HullPoints::rangeAlong(const Vector& origin, const Vector& axis) const {
    // Two loops over each piece, which compilers vectorise.
    constexpr int kPiece = 256;
    std::array<double, kPiece> heights;
    Range range{m_constants.zero, m_constants.zero};
    for (int first = 0; first < count(); first += kPiece) {
        const int size = std::min(kPiece, count() - first);
        for (int i = 0; i < size; ++i) {
            heights[static_cast<std::size_t>(i)] = ((*this)[first + i] - origin) | axis;
        }
        for (int i = 0; i < size; ++i) {
            const double x = heights[static_cast<std::size_t>(i)];
            range.min = x < range.min ? x : range.min;
            range.max = x > range.max ? x : range.max;
        }
    }
    return range;
}

}  // namespace Tesk::minbox

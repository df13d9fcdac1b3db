#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <vector>

#include "minbox/bound/BoxBound.h"
#include "minbox/edges/ClassWidths.h"
#include "minbox/edges/DirectionIndex.h"
#include "minbox/edges/EdgeDirections.h"

namespace Tesk::minbox {

/// Three classes of edges that are orthogonal to each other within the index's tolerance, at least
/// one pair of them exactly, and a lower bound of the volume, as computed, of any box along them.
struct ClassTriple {
    std::array<int, 3> classes;
    double volumeBound;
};

/// The classes orthogonal to one class, the pole, by their angle about it. Tells which of them are
/// orthogonal to each other.
class OrthogonalPlane {
 public:
    OrthogonalPlane(const EdgeDirections& directions, const DirectionIndex& index, int pole);

    const std::vector<int>& classes() const { return m_classes; }

    /// Calls visit(b) for each class of the plane that is orthogonal to classes()[place] within the
    /// index's tolerance.
    template <class Visit>
    void forEachPartner(std::size_t place, Visit visit) const;

 private:
    const EdgeDirections& m_directions;
    std::vector<int> m_classes;    ///< by ascending angle
    std::vector<double> m_angles;  ///< 0 .. pi
};

/// All triples that may have a box smaller than the limit, by ascending bound; a triple may occur
/// more than once. May end early once `isAborted` is set.
std::vector<ClassTriple> findTriples(const EdgeDirections& directions, ClassWidths& widths,
                                     const DirectionIndex& index, const BoxBound& bound,
                                     const std::atomic<bool>& isAborted, const VolumeLimit& limit);

template <class Visit>
void OrthogonalPlane::forEachPartner(std::size_t place, Visit visit) const {
    constexpr double kPi = 3.141592653589793;
    constexpr double kTolerance = 1e-8;
    TESK_ASSERT(place < m_classes.size());
    // A quarter turn further. Angles are modulo pi, so the partner may be near either end.
    double angle = m_angles[place] + kPi / 2;
    if (angle > kPi) angle -= kPi;
    for (const double around : {angle - kPi, angle, angle + kPi}) {
        auto it = std::lower_bound(m_angles.begin(), m_angles.end(), around - kTolerance);
        for (; it != m_angles.end() && *it <= around + kTolerance; ++it) {
            const int other = m_classes[static_cast<std::size_t>(it - m_angles.begin())];
            const auto& units = m_directions.units();
            const double dot = units[static_cast<std::size_t>(m_classes[place])] |
                               units[static_cast<std::size_t>(other)];
            if (std::fabs(dot) <= DirectionIndex::kTolerance) visit(other);
        }
    }
}

}  // namespace Tesk::minbox

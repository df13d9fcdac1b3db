#include "minbox/edges/OrthogonalTriples.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "minbox/bound/DirectionOrder.h"

namespace Tesk::minbox {
namespace {

/// A set of classes of which every orthogonal triple contains one. In any coordinate, the squares
/// of three orthogonal unit vectors add up to 1, so one of them is at least a third: the coordinate
/// is the one in which that holds for the fewest classes.
std::vector<int> polesOfAllTriples(const EdgeDirections& directions) {
    constexpr double kThird = 1.0 / 3.0 - 1e-6;
    std::vector<int> fewest;
    for (int axis = 0; axis < 3; ++axis) {
        std::vector<int> poles;
        for (int c = 0; c < directions.classCount(); ++c) {
            const double x = directions.units()[static_cast<std::size_t>(c)][axis];
            if (x * x >= kThird) poles.push_back(c);
        }
        if (axis == 0 || poles.size() < fewest.size()) fewest = std::move(poles);
    }
    orderByDirection(directions.units(), fewest);
    return fewest;
}

}  // namespace

OrthogonalPlane::OrthogonalPlane(const EdgeDirections& directions, const DirectionIndex& index,
                                 int pole)
    : m_directions(directions) {
    constexpr double kPi = 3.141592653589793;
    const Vector& axis = directions.units()[static_cast<std::size_t>(pole)];
    std::vector<int> members;
    index.forEachOrthogonal(axis, [&](int other) { members.push_back(other); });
    if (members.size() < 2) return;
    const Vector e1 = anyOrthogonal(axis).GetNormal();
    const Vector e2 = axis * e1;
    std::vector<std::pair<double, int>> byAngle;
    byAngle.reserve(members.size());
    for (const int member : members) {
        const Vector& unit = directions.units()[static_cast<std::size_t>(member)];
        const double angle = std::atan2(unit | e2, unit | e1);
        byAngle.emplace_back(angle < 0.0 ? angle + kPi : angle, member);
    }
    std::sort(byAngle.begin(), byAngle.end());
    m_classes.reserve(members.size());
    m_angles.reserve(members.size());
    for (const auto& [angle, member] : byAngle) {
        m_angles.push_back(angle);
        m_classes.push_back(member);
    }
}

std::vector<ClassTriple> findTriples(const EdgeDirections& directions, ClassWidths& widths,
                                     const DirectionIndex& index, const BoxBound& bound,
                                     const std::atomic<bool>& isAborted, const VolumeLimit& limit) {
    std::vector<ClassTriple> triples;
    const auto isExact = [&](int a, int b, int c) {
        return directions.areOrthogonal(a, b) || directions.areOrthogonal(b, c) ||
               directions.areOrthogonal(c, a);
    };
    for (const int a : polesOfAllTriples(directions)) {
        if (isAborted) break;
        if (bound.isAbove(limit.get(), directions.units()[static_cast<std::size_t>(a)])) continue;
        const OrthogonalPlane plane(directions, index, a);
        for (std::size_t place = 0; place < plane.classes().size(); ++place) {
            const int b = plane.classes()[place];
            plane.forEachPartner(place, [&](int c) {
                if (b >= c || !isExact(a, b, c)) return;
                const double least = widths.volumeBound(a, b, c);
                if (least <= limit.get()) triples.push_back({{a, b, c}, least});
            });
        }
    }
    std::sort(triples.begin(), triples.end(), [](const ClassTriple& s, const ClassTriple& t) {
        return s.volumeBound < t.volumeBound;
    });
    return triples;
}

}  // namespace Tesk::minbox

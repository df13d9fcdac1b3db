#include "OrthogonalTriples.h"

#include <algorithm>
#include <cmath>

#include "LowDimensionBox.h"

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
                                     const DirectionIndex& index,
                                     const std::atomic<bool>& isAborted) {
    std::vector<ClassTriple> triples;
    for (int a = 0; a < directions.classCount() && !isAborted; ++a) {
        const OrthogonalPlane plane(directions, index, a);
        for (std::size_t place = 0; place < plane.classes().size(); ++place) {
            const int b = plane.classes()[place];
            plane.forEachPartner(place, [&](int c) {
                if (b >= c) return;
                triples.push_back({{a, b, c}, widths.volumeBound(a, b, c)});
            });
        }
    }
    std::sort(triples.begin(), triples.end(), [](const ClassTriple& s, const ClassTriple& t) {
        return s.volumeBound < t.volumeBound;
    });
    return triples;
}

#include "minbox/edges/EdgeDirections.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Tesk::minbox {
namespace {

using Integers = std::array<std::int64_t, 3>;

/// A power of two that divides all differences of hull coordinates: hull vertices lie on a grid of
/// 2^-26 of the points' extent, rounded up to a power of two.
double gridStep(const HullPoints& points) {
    int exponent = 0;
    std::frexp(points.longestSide(), &exponent);
    return std::ldexp(1.0, exponent - 28);
}

/// The vector in steps without a common factor, its first nonzero component positive.
Integers primitiveOf(const Vector& v, double step) {
    Integers p;
    for (int i = 0; i < 3; ++i) {
        p[static_cast<std::size_t>(i)] = static_cast<std::int64_t>(v[i] / step);
    }
    std::int64_t factor = std::gcd(std::gcd(p[0], p[1]), p[2]);
    if (factor == 0) return p;
    if (p < Integers{0, 0, 0}) factor = -factor;
    for (std::int64_t& component : p) component /= factor;
    return p;
}

/// The indices of directions, ordered by their components; those of equal ones ascending.
std::vector<int> sortedByDirection(const std::vector<Integers>& directions) {
    struct Entry {
        std::uint64_t xAndY;
        std::int32_t z;
        std::int32_t index;

        auto operator<=>(const Entry&) const = default;
    };
    // Components stay below 2^29.
    const auto upward = [](std::int64_t component) {
        return static_cast<std::uint64_t>(component + (1 << 30));
    };
    std::vector<Entry> entries;
    entries.reserve(directions.size());
    for (const auto& [x, y, z] : directions) {
        entries.push_back({upward(x) << 32 | upward(y), static_cast<std::int32_t>(z),
                           static_cast<std::int32_t>(entries.size())});
    }
    std::sort(entries.begin(), entries.end());
    std::vector<int> indices;
    indices.reserve(entries.size());
    for (const Entry& entry : entries) indices.push_back(entry.index);
    return indices;
}

Vector unitOf(const Integers& p) {
    return Vector(static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2]))
        .GetNormal();
}

}  // namespace

EdgeDirections::EdgeDirections(const SearchHull& hull, const std::atomic<bool>& isAborted) {
    const HullPoints& points = hull.points();
    const std::vector<gte::HullEdge>& edges = hull.hull().getHullEdges();
    const double step = gridStep(points);
    std::vector<Integers> directions;
    m_vectors.reserve(edges.size());
    directions.reserve(edges.size());
    for (const gte::HullEdge& edge : edges) {
        if (isAborted) return;
        m_vectors.push_back(points[edge.b] - points[edge.a]);
        directions.push_back(primitiveOf(m_vectors.back(), step));
    }
    formClasses(directions);
}

void EdgeDirections::formClasses(const std::vector<Integers>& directions) {
    const auto direction = [&](int edge) -> const Integers& {
        return directions[static_cast<std::size_t>(edge)];
    };
    m_edges = sortedByDirection(directions);
    m_classOf.resize(directions.size());
    for (std::size_t i = 0; i < m_edges.size(); ++i) {
        if (i == 0 || direction(m_edges[i]) != m_primitives.back()) {
            m_first.push_back(i);
            m_primitives.push_back(direction(m_edges[i]));
            m_units.push_back(unitOf(m_primitives.back()));
        }
        m_classOf[static_cast<std::size_t>(m_edges[i])] = static_cast<int>(m_units.size()) - 1;
    }
    m_first.push_back(m_edges.size());
}

std::span<const int> EdgeDirections::edges(int direction) const {
    TESK_ASSERT(direction >= 0 && direction < classCount());
    const auto c = static_cast<std::size_t>(direction);
    return {m_edges.data() + m_first[c], m_first[c + 1] - m_first[c]};
}

bool EdgeDirections::areOrthogonal(int a, int b) const {
    // Components stay below 2^29, the sum below 2^60.
    const Integers& p = m_primitives[static_cast<std::size_t>(a)];
    const Integers& q = m_primitives[static_cast<std::size_t>(b)];
    return p[0] * q[0] + p[1] * q[1] + p[2] * q[2] == 0;
}

}  // namespace Tesk::minbox

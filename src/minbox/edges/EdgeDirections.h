#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <vector>

#include "minbox/hull/SearchHull.h"

namespace Tesk::minbox {

/// The hull's edges, grouped into classes of exactly parallel ones.
class EdgeDirections {
 public:
    /// Returns early once `isAborted` is set; the object must not be used then.
    explicit EdgeDirections(const SearchHull& hull, const std::atomic<bool>& isAborted = false);

    int edgeCount() const { return static_cast<int>(m_vectors.size()); }
    int classCount() const { return static_cast<int>(m_units.size()); }

    /// An edge's vector, from its a to its b.
    const Vector& vector(int edge) const {
        TESK_ASSERT(edge >= 0 && edge < edgeCount());
        return m_vectors[static_cast<std::size_t>(edge)];
    }

    int classOf(int edge) const { return m_classOf[static_cast<std::size_t>(edge)]; }

    /// The edges of a class, ascending.
    std::span<const int> edges(int direction) const;

    /// The unit vector of each class, up to sign.
    const std::vector<Vector>& units() const { return m_units; }

    /// Whether the edges of two classes are exactly orthogonal.
    bool areOrthogonal(int a, int b) const;

 private:
    using Integers = std::array<std::int64_t, 3>;

    void formClasses(const std::vector<Integers>& directions);

    std::vector<Vector> m_vectors;
    std::vector<int> m_classOf;
    std::vector<int> m_edges;  ///< class by class
    std::vector<std::size_t> m_first;
    std::vector<Integers> m_primitives;  ///< by class, without a common factor
    std::vector<Vector> m_units;
};

}  // namespace Tesk::minbox

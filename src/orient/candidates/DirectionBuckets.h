#pragma once

#include <robin_hood.h>

#include <cstdint>
#include <vector>

#include "TeskDataBasic/UVector3.h"

namespace Tesk::orient {

/// Directions that share a grid cell: how many, the place of the last one in its list, and that
/// one.
struct DirectionBucket {
    std::int32_t index = 0;
    std::int32_t count = 0;
    UVector3<float> last;
};

/// Counts directions by their directionKey(). The cells that unit vectors reach are few enough for
/// a table; only others go through a map.
class DirectionBuckets {
 public:
    DirectionBuckets();

    /// The place of a direction in the table, or kBeyond. Any number of threads may ask.
    static std::uint32_t cellOf(const UVector3<float>& direction);

    static constexpr std::uint32_t kBeyond = ~std::uint32_t{0};

    /// Counts a direction with that cell. Indices do not fall.
    void add(std::uint32_t cell, const UVector3<float>& direction, std::int32_t index);

    /// Counts what the others have counted too, as if all indices had come in order, and empties
    /// them. No two have an index in common.
    void take(DirectionBuckets& others);

    /// The fullest buckets, at most `most`, of equally full ones that with the lower index first.
    /// Empties all.
    std::vector<DirectionBucket> takeFullest(std::size_t most);

 private:
    using Place = std::uint32_t;

    DirectionBucket& bucketOf(std::uint32_t cell, const UVector3<float>& direction);
    void clear();

    std::vector<Place> m_places;  ///< of each cell's bucket, one up
    robin_hood::unordered_map<std::int64_t, Place> m_placesBeyond;
    std::vector<std::uint32_t> m_cells;  ///< of each bucket
    std::vector<DirectionBucket> m_buckets;
};

}  // namespace Tesk::orient

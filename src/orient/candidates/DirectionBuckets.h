#pragma once

#include <robin_hood.h>

#include <cstdint>
#include <vector>

#include "TeskDataBasic/UVector3.h"

namespace Tesk::orient {

/// The directions of one grid cell: how many there are, the last one and its index.
struct DirectionBucket {
    std::int32_t index = 0;
    std::int32_t count = 0;
    UVector3<float> last;
};

/// Counts directions by their directionKey(). Unit vectors fall into so few cells that a table
/// holds the counts; a map holds those of any other vectors.
class DirectionBuckets {
 public:
    DirectionBuckets();

    /// The index of a direction's cell in the table, or kBeyond if the table does not have it. Any
    /// number of threads may call this.
    static std::uint32_t cellOf(const UVector3<float>& direction);

    static constexpr std::uint32_t kBeyond = ~std::uint32_t{0};

    /// Counts a direction, whose cell is cellOf(direction). Indices must not decrease from call to
    /// call.
    void add(std::uint32_t cell, const UVector3<float>& direction, std::int32_t index);

    /// Moves the counts of other buckets into these. The result is the same as if all directions
    /// had been added here in the order of their indices. No index occurs in both.
    void take(DirectionBuckets& others);

    /// Returns the fullest buckets, at most `limit`, and empties all. Of equally full buckets, the
    /// one with the lower index comes first.
    std::vector<DirectionBucket> takeFullest(std::size_t limit);

 private:
    using Place = std::uint32_t;

    DirectionBucket& bucketOf(std::uint32_t cell, const UVector3<float>& direction);
    void clear();

    std::vector<Place> m_places;  ///< per cell, 1 + the index of its bucket; 0: none
    robin_hood::unordered_map<std::int64_t, Place> m_placesBeyond;
    std::vector<std::uint32_t> m_cells;  ///< the cell of each bucket
    std::vector<DirectionBucket> m_buckets;
};

}  // namespace Tesk::orient

#include "orient/candidates/DirectionBuckets.h"

#include <algorithm>
#include <cmath>

#include "TeskCommon/Assert.h"
#include "orient/candidates/DirectionKey.h"

namespace Tesk::orient {
namespace {

/// Slightly more than the largest component of a unit vector.
constexpr float kMaxComponent = 1.004f;
/// The table covers the cells from −32 to 33 along each component.
constexpr std::int32_t kCellsPerAxis = 66;
constexpr std::int32_t kLowestCell = -32;

/// NaN counts as zero and so is in the table.
bool isInTable(float component) {
    return !(std::fabs(component) > kMaxComponent);
}

/// The cell along one component as directionKey() computes it, counted from 0. The thousandths are
/// so few that multiplying by a reciprocal that is rounded up gives the exact quotient.
std::int32_t placeOf(float component) {
    constexpr float kHalfCell = 15.0f;
    constexpr float kCellsPerThousandth = 0x1.111112p-5f;  // 1/30 and a little more
    const float defined = component == component ? component : 0.0f;
    const auto thousandths = static_cast<float>(static_cast<std::int32_t>(defined * 1000.0f));
    return static_cast<std::int32_t>((thousandths + kHalfCell) * kCellsPerThousandth) - kLowestCell;
}

}  // namespace

DirectionBuckets::DirectionBuckets()
    : m_places(std::size_t{kCellsPerAxis} * kCellsPerAxis * kCellsPerAxis) {}

std::uint32_t DirectionBuckets::cellOf(const UVector3<float>& direction) {
    const auto& [x, y, z] = direction;
    if (!isInTable(x) || !isInTable(y) || !isInTable(z)) return kBeyond;
    return static_cast<std::uint32_t>((placeOf(z) * kCellsPerAxis + placeOf(y)) * kCellsPerAxis +
                                      placeOf(x));
}

DirectionBucket& DirectionBuckets::bucketOf(std::uint32_t cell, const UVector3<float>& direction) {
    TESK_ASSERT(cell == kBeyond || cell < m_places.size());
    Place& place = cell != kBeyond ? m_places[cell] : m_placesBeyond[directionKey(direction)];
    if (place == 0) {
        m_cells.push_back(cell);
        m_buckets.emplace_back();
        place = static_cast<Place>(m_buckets.size());
    }
    return m_buckets[place - 1];
}

void DirectionBuckets::add(std::uint32_t cell, const UVector3<float>& direction,
                           std::int32_t index) {
    TESK_ASSERT(cell == cellOf(direction));
    DirectionBucket& bucket = bucketOf(cell, direction);
    TESK_ASSERT(bucket.count == 0 || bucket.index <= index);
    bucket.index = index;
    ++bucket.count;
    bucket.last = direction;
}

void DirectionBuckets::take(DirectionBuckets& others) {
    TESK_ASSERT(&others != this);
    for (std::size_t i = 0; i < others.m_buckets.size(); ++i) {
        const DirectionBucket& other = others.m_buckets[i];
        DirectionBucket& bucket = bucketOf(others.m_cells[i], other.last);
        if (bucket.count == 0 || other.index > bucket.index) {
            bucket.index = other.index;
            bucket.last = other.last;
        }
        bucket.count += other.count;
    }
    others.clear();
}

void DirectionBuckets::clear() {
    for (const std::uint32_t cell : m_cells) {
        if (cell != kBeyond) m_places[cell] = 0;
    }
    m_placesBeyond.clear();
    m_cells.clear();
    m_buckets.clear();
}

std::vector<DirectionBucket> DirectionBuckets::takeFullest(std::size_t limit) {
    const auto end =
        m_buckets.begin() + static_cast<std::ptrdiff_t>(std::min(limit, m_buckets.size()));
    std::partial_sort(m_buckets.begin(), end, m_buckets.end(),
                      [](const DirectionBucket& a, const DirectionBucket& b) {
                          return a.count != b.count ? a.count > b.count : a.index < b.index;
                      });
    const std::vector<DirectionBucket> fullest(m_buckets.begin(), end);
    clear();
    return fullest;
}

}  // namespace Tesk::orient

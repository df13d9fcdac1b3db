#include "orient/candidates/DirectionBuckets.h"

#include <algorithm>
#include <cmath>

#include "orient/candidates/DirectionKey.h"

namespace Tesk::orient {
namespace {

/// What a component of a unit vector can be, and a little more.
constexpr float kReach = 1.004f;
/// Cells along one component: from −32 to 33.
constexpr std::int32_t kCells = 66;
constexpr std::int32_t kLowest = -32;

/// Undefined components count as zero.
bool isWithinReach(float component) {
    return !(std::fabs(component) > kReach);
}

/// The cell along one component, from 0, as directionKey() forms it. The thousandths are few, so
/// that a product with a reciprocal rounded up gives the quotient.
std::int32_t placeOf(float component) {
    constexpr float kHalfCell = 15.0f;
    constexpr float kPerCell = 0x1.111112p-5f;  // 1/30 and a little more
    const float defined = component == component ? component : 0.0f;
    const auto thousandths = static_cast<float>(static_cast<std::int32_t>(defined * 1000.0f));
    return static_cast<std::int32_t>((thousandths + kHalfCell) * kPerCell) - kLowest;
}

}  // namespace

DirectionBuckets::DirectionBuckets() : m_places(std::size_t{kCells} * kCells * kCells) {}

std::uint32_t DirectionBuckets::cellOf(const UVector3<float>& direction) {
    const auto& [x, y, z] = direction;
    if (!isWithinReach(x) || !isWithinReach(y) || !isWithinReach(z)) return kBeyond;
    return static_cast<std::uint32_t>((placeOf(z) * kCells + placeOf(y)) * kCells + placeOf(x));
}

DirectionBucket& DirectionBuckets::bucketOf(std::uint32_t cell, const UVector3<float>& direction) {
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
    DirectionBucket& bucket = bucketOf(cell, direction);
    bucket.index = index;
    ++bucket.count;
    bucket.last = direction;
}

void DirectionBuckets::take(DirectionBuckets& others) {
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

std::vector<DirectionBucket> DirectionBuckets::takeFullest(std::size_t most) {
    const auto end =
        m_buckets.begin() + static_cast<std::ptrdiff_t>(std::min(most, m_buckets.size()));
    std::partial_sort(m_buckets.begin(), end, m_buckets.end(),
                      [](const DirectionBucket& a, const DirectionBucket& b) {
                          return a.count != b.count ? a.count > b.count : a.index < b.index;
                      });
    const std::vector<DirectionBucket> fullest(m_buckets.begin(), end);
    clear();
    return fullest;
}

}  // namespace Tesk::orient

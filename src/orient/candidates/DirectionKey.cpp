#include "orient/candidates/DirectionKey.h"

#include <limits>

namespace Tesk::orient {
namespace {

/// The value truncated toward zero and clamped to the integer's range.
std::int64_t truncatedToInt64(float value) {
    constexpr float kTwoTo63 = 9223372036854775808.0f;
    if (value >= kTwoTo63) return std::numeric_limits<std::int64_t>::max();
    if (value <= -kTwoTo63) return std::numeric_limits<std::int64_t>::min();
    return value == value ? static_cast<std::int64_t>(value) : 0;
}

/// The cell index along one component, as the bits of a 64-bit two's complement integer.
std::uint64_t cellBits(float component) {
    constexpr std::int64_t kHalfCell = 15;
    constexpr std::int64_t kCell = 30;
    const std::int64_t thousandths = truncatedToInt64(component * 1000.0f);
    const bool wouldOverflow = thousandths > std::numeric_limits<std::int64_t>::max() - kHalfCell;
    const std::int64_t shifted = wouldOverflow ? thousandths : thousandths + kHalfCell;
    return static_cast<std::uint64_t>(shifted / kCell);
}

}  // namespace

std::int64_t directionKey(const UVector3<float>& direction) {
    const std::uint64_t zy = (cellBits(direction.z) << 10) ^ cellBits(direction.y);
    return static_cast<std::int64_t>((zy << 10) ^ cellBits(direction.x));
}

}  // namespace Tesk::orient

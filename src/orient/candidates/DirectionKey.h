#pragma once

#include <cstdint>

#include "TeskDataBasic/UVector3.h"

namespace Tesk::orient {

/// The key of the grid cell that contains a direction, for finding near-duplicates. Unit vectors in
/// different cells have different keys. Cells are about 0.03 wide in each component and, on
/// purpose, not symmetric about zero: cell 0 spans −0.044..0.014. A component that is NaN counts as
/// 0. A component beyond the range of a 64-bit integer counts as the end of that range.
std::int64_t directionKey(const UVector3<float>& direction);

}  // namespace Tesk::orient

#pragma once

#include <cstdint>

#include "TeskDataBasic/UVector3.h"

namespace Tesk::orient {

/// The grid cell of a direction, for finding near-duplicates: one-to-one on the cells that unit
/// vectors reach. Cells are about 0.03 wide in each component and, on purpose, not symmetric about
/// zero: cell 0 spans −0.044..0.014. A component that is NaN counts as 0, one beyond the range of
/// a 64-bit integer as the end of that range.
std::int64_t directionKey(const UVector3<float>& direction);

}  // namespace Tesk::orient

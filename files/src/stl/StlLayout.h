#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "bytes/ByteOrder.h"

namespace Tesk::files {

// A binary STL: 80 bytes of anything, the count, and per triangle its normal, three corners and two
// bytes of anything.
constexpr std::size_t kStlHeaderSize = 84;
constexpr std::size_t kStlRecordSize = 50;
constexpr std::size_t kStlNormalSize = 12;

/// The count of a binary STL of at least kStlHeaderSize bytes.
inline std::uint32_t stlCount(std::string_view bytes) {
    return numberAt<std::uint32_t>(bytes.data() + 80);
}

}  // namespace Tesk::files

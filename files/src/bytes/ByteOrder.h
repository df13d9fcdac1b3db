#pragma once

#include <bit>
#include <cstddef>
#include <cstring>
#include <string>

namespace Tesk::files {

/// A number as it lies in a file of the given byte order. `bytes` need not be aligned.
template <class Number, std::endian Order = std::endian::little>
Number numberAt(const char* bytes) {
    Number value;
    if constexpr (Order == std::endian::native || sizeof(Number) == 1) {
        std::memcpy(&value, bytes, sizeof(Number));
    } else {
        char turned[sizeof(Number)];
        for (std::size_t i = 0; i < sizeof(Number); ++i) {
            turned[i] = bytes[sizeof(Number) - 1 - i];
        }
        std::memcpy(&value, turned, sizeof(Number));
    }
    return value;
}

/// Appends a number in little-endian order.
template <class Number>
void appendNumber(std::string& bytes, Number value) {
    char raw[sizeof(Number)];
    const auto turned = numberAt<Number>(reinterpret_cast<const char*>(&value));
    std::memcpy(raw, &turned, sizeof(Number));
    bytes.append(raw, sizeof(Number));
}

}  // namespace Tesk::files

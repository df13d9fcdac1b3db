#pragma once

#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "FuzzInput.h"
#include "teskorient.h"

// Arguments for calls of the C interface: sound ones, and wrong ones that the library can tell.

/// Small whole numbers, so that heights and edges coincide; now and then something odd.
inline float takeNumber(FuzzInput& input) {
    const auto kind = input.take<std::uint8_t>();
    if (kind < 250) return static_cast<float>(static_cast<int>(kind) - 125) * 0.25f;
    constexpr float kOdd[] = {std::numeric_limits<float>::quiet_NaN(),
                              std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::max(),
                              1e-38f,
                              -0.0f,
                              1e30f};
    return kOdd[kind - 250];
}

/// Mostly `usual`; now and then an integer that makes no sense.
template <class Integer>
Integer takeOddly(FuzzInput& input, Integer usual) {
    const auto kind = input.take<std::uint8_t>();
    if (kind < 235) return usual;
    constexpr Integer kOdd[] = {-1,
                                0,
                                1,
                                std::numeric_limits<Integer>::max(),
                                std::numeric_limits<Integer>::min(),
                                std::numeric_limits<Integer>::max() / 2};
    return kOdd[kind % 6];
}

inline bool takeRarely(FuzzInput& input) {
    return input.take<std::uint8_t>() > 240;
}

template <class Struct>
Struct takeSized(FuzzInput& input) {
    Struct record;
    std::memset(&record, 0, sizeof record);
    record.struct_size = takeRarely(input) ? input.take<std::uint8_t>() : unsigned{sizeof record};
    return record;
}

/// An array of rows in a block of its own, and how a call is told of it.
struct Rows {
    std::vector<unsigned char> bytes;
    std::int64_t count = 0;
    std::int64_t stride = 0;

    const void* data() const { return bytes.empty() ? nullptr : bytes.data() + 1; }
};

/// Rows of three numbers, anywhere in memory.
template <class Take>
Rows takeRows(FuzzInput& input, std::size_t rowSize, const Take& take) {
    const std::size_t most = input.take<std::uint8_t>() % 24;
    const std::size_t gap = input.take<std::uint8_t>() % 8;
    Rows rows;
    rows.count = static_cast<std::int64_t>(most);
    rows.stride = gap == 0 ? 0 : static_cast<std::int64_t>(rowSize + gap);
    const std::size_t step = gap == 0 ? rowSize : rowSize + gap;
    if (most > 0) rows.bytes.resize(1 + (most - 1) * step + rowSize);
    for (std::size_t i = 0; i < most; ++i) {
        for (std::size_t k = 0; k < 3; ++k) take(&rows.bytes[1 + i * step + k * rowSize / 3]);
    }
    return rows;
}

inline Rows takePoints(FuzzInput& input, std::int32_t& type) {
    type = input.take<std::uint8_t>() % 2 == 0 ? TESK_FLOAT32 : TESK_FLOAT64;
    const bool isFloat = type == TESK_FLOAT32;
    Rows rows = takeRows(input, isFloat ? 12 : 24, [&](unsigned char* to) {
        const float value = takeNumber(input);
        const auto wide = static_cast<double>(value);
        if (isFloat) {
            std::memcpy(to, &value, sizeof value);
        } else {
            std::memcpy(to, &wide, sizeof wide);
        }
    });
    return rows;
}

/// What is wrong with an array must be something that the library can tell: a count beyond the
/// memory is not.
template <class Integer>
Integer tellable(Integer odd, Integer count, bool isCount) {
    return isCount && odd > count && odd <= std::numeric_limits<std::int32_t>::max() ? count : odd;
}

inline std::int64_t takeStride(FuzzInput& input, const Rows& rows) {
    const std::int64_t odd = takeOddly(input, rows.stride);
    return odd == 0 || odd == std::numeric_limits<std::int64_t>::max() / 2 ? rows.stride : odd;
}

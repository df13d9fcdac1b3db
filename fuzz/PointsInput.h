#pragma once

#include <vector>

#include "FuzzInput.h"
#include "TeskDataBasic/UPoint3.h"

/// Coordinates that a fuzzer should not have to find: small whole numbers, so that points meet,
/// line up and lie in planes; the float next to one; and any bits at all.
inline float takeCoordinate(FuzzInput& input) {
    const auto kind = input.take<std::uint8_t>();
    if (kind < 160) return static_cast<float>(static_cast<int>(kind % 16) - 8);
    if (kind < 220) {
        const auto value = static_cast<float>(static_cast<int>(kind % 8) - 4);
        return value + value * static_cast<float>(static_cast<int>(kind / 8 % 4) - 2) * 0x1p-23f;
    }
    return input.take<float>();
}

inline std::vector<UPoint3<float>> takePoints(FuzzInput& input) {
    std::vector<UPoint3<float>> points(input.take<std::uint8_t>() % 64);
    for (UPoint3<float>& p : points) {
        for (int axis = 0; axis < 3; ++axis) p[axis] = takeCoordinate(input);
    }
    return points;
}

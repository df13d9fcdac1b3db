#pragma once

#include <cstdint>
#include <vector>

#include "FuzzInput.h"
#include "TeskMeshData/MeshKernel.h"

/// Coordinates that a fuzzer should not have to find: small whole numbers, so that heights and
/// edges coincide, and any bits at all.
inline float takeCoordinate(FuzzInput& input) {
    const auto kind = input.take<std::uint8_t>();
    if (kind < 200) return static_cast<float>(static_cast<int>(kind) - 100) * 0.5f;
    return input.take<float>();
}

inline MeshKernel takeMesh(FuzzInput& input) {
    std::vector<UPoint3<float>> positions(3 + input.take<std::uint8_t>() % 30);
    for (UPoint3<float>& p : positions) {
        for (int axis = 0; axis < 3; ++axis) p[axis] = takeCoordinate(input);
    }
    std::vector<UMesh<float>::Corners> triangles(input.take<std::uint8_t>() % 60);
    const auto count = static_cast<std::int32_t>(positions.size());
    for (UMesh<float>::Corners& corners : triangles) {
        for (std::int32_t& corner : corners) corner = input.take<std::uint8_t>() % count;
    }
    return {positions, triangles};
}

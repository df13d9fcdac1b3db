#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint3.h"
#include "teskorient.h"

namespace Tesk::c {

/// The points of a host's array, as floats. Throws CallError if pointer, count, type or stride make
/// no sense.
std::vector<UPoint3<float>> pointsOf(const tesk_points& points, const char* name);

/// The corner indices of a host's triangles. Throws CallError as above, and for an index outside
/// 0..positionCount-1.
std::vector<std::array<std::int32_t, 3>> trianglesOf(const tesk_mesh_arrays& arrays,
                                                     std::size_t positionCount);

/// The first floats of a host's array, which may lie at any address.
template <std::size_t count>
std::array<float, count> floatsOf(const float* values) {
    std::array<float, count> copied;
    std::memcpy(copied.data(), static_cast<const void*>(values), sizeof copied);
    return copied;
}

/// 16 floats, row by row.
UMatrix4<float> matrixOf(const float* values);
void copyTo(float* values, const UMatrix4<float>& matrix);

}  // namespace Tesk::c

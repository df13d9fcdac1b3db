#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "shapes/Part.h"
#include "teskorient.h"
#include "tools/FloatBits.h"

/// What a host of the C interface has around its calls.

struct FreeHandle {
    void operator()(void* handle) const { tesk_free(handle); }
};
using MeshHandle = std::unique_ptr<tesk_mesh, FreeHandle>;
using PartHandle = std::unique_ptr<tesk_part, FreeHandle>;

/// A struct of the interface, zeroed, with its size.
template <class Struct>
Struct sized() {
    Struct record;
    std::memset(&record, 0, sizeof record);
    record.struct_size = sizeof record;
    return record;
}

/// A part's arrays. The part has to outlive them.
inline tesk_mesh_arrays arraysOf(const Part& part) {
    auto arrays = sized<tesk_mesh_arrays>();
    arrays.positions = part.positions.data();
    arrays.position_count = static_cast<std::int64_t>(part.positions.size());
    arrays.triangles = part.triangles.data();
    arrays.triangle_count = static_cast<std::int64_t>(part.triangles.size());
    return arrays;
}

inline tesk_points pointsOf(const Part& part) {
    auto points = sized<tesk_points>();
    points.data = part.positions.data();
    points.count = static_cast<std::int64_t>(part.positions.size());
    return points;
}

inline void copyTo(float* values, const UMatrix4<float>& matrix) {
    for (int i = 0; i < 16; ++i) values[i] = matrix.at(i / 4, i % 4);
}

/// The part behind a handle; null where that fails.
inline MeshHandle meshOf(const Part& part, const UMatrix4<float>& placement = {}) {
    float matrix[16];
    copyTo(matrix, placement);
    tesk_mesh_arrays arrays = arraysOf(part);
    arrays.placement = matrix;
    tesk_mesh* mesh = nullptr;
    tesk_mesh_create(&arrays, &mesh);
    return MeshHandle(mesh);
}

inline bool sameMatrix(const float* values, const UMatrix4<float>& matrix) {
    for (int i = 0; i < 16; ++i) {
        if (!sameBits(values[i], matrix.at(i / 4, i % 4))) return false;
    }
    return true;
}

/// A call on so many threads, with a callback.
inline tesk_call callOn(int threads, tesk_progress progress = nullptr, void* user = nullptr) {
    auto call = sized<tesk_call>();
    call.threads = threads;
    call.progress = progress;
    call.user = user;
    return call;
}

inline std::string lastError() {
    return tesk_last_error();
}

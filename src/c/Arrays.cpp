#include "c/Arrays.h"

#include <limits>
#include <string>

#include "c/Guard.h"

namespace Tesk::c {

namespace {

constexpr std::int64_t kMostElements = std::numeric_limits<std::int32_t>::max();

/// Three numbers each, in a host's memory: not necessarily aligned.
struct Rows {
    const unsigned char* data;
    std::int64_t count;
    std::int64_t stride;

    template <class Number>
    std::array<Number, 3> at(std::int64_t i) const {
        std::array<Number, 3> row;
        std::memcpy(row.data(), data + i * stride, sizeof row);
        return row;
    }
};

Rows rowsOf(const void* data, std::int64_t count, std::int64_t stride, std::int64_t packed,
            const std::string& name) {
    if (count < 0 || count > kMostElements) {
        refuse(name + ": the count is " + std::to_string(count) + ", outside 0..2147483647");
    }
    if (count > 0 && data == nullptr) refuse(name + ": the array is null");
    if (stride != 0 && stride < packed) {
        refuse(name + ": the stride is " + std::to_string(stride) + " bytes, less than the " +
               std::to_string(packed) + " of one element");
    }
    if (count > 0 && stride > std::numeric_limits<std::int64_t>::max() / count) {
        refuse(name + ": the stride is " + std::to_string(stride) + " bytes, more than memory has");
    }
    return {static_cast<const unsigned char*>(data), count, stride == 0 ? packed : stride};
}

template <class Number>
std::vector<UPoint3<float>> pointsIn(const Rows& rows) {
    std::vector<UPoint3<float>> points;
    points.reserve(static_cast<std::size_t>(rows.count));
    for (std::int64_t i = 0; i < rows.count; ++i) {
        const auto [x, y, z] = rows.at<Number>(i);
        points.emplace_back(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
    }
    return points;
}

}  // namespace

std::vector<UPoint3<float>> pointsOf(const tesk_points& points, const char* name) {
    if (points.type == TESK_FLOAT32) {
        return pointsIn<float>(
            rowsOf(points.data, points.count, points.stride, 3 * sizeof(float), name));
    }
    if (points.type == TESK_FLOAT64) {
        return pointsIn<double>(
            rowsOf(points.data, points.count, points.stride, 3 * sizeof(double), name));
    }
    refuse(std::string(name) + ": no type of number is " + std::to_string(points.type));
}

std::vector<std::array<std::int32_t, 3>> trianglesOf(const tesk_mesh_arrays& arrays,
                                                     std::size_t positionCount) {
    const Rows rows = rowsOf(arrays.triangles, arrays.triangle_count, arrays.triangle_stride,
                             3 * sizeof(std::int32_t), "triangles");
    std::vector<std::array<std::int32_t, 3>> triangles;
    triangles.reserve(static_cast<std::size_t>(rows.count));
    for (std::int64_t i = 0; i < rows.count; ++i) {
        const auto corners = rows.at<std::int32_t>(i);
        for (const std::int32_t corner : corners) {
            if (corner >= 0 && static_cast<std::size_t>(corner) < positionCount) continue;
            refuse("triangles: triangle " + std::to_string(i) + " names vertex " +
                   std::to_string(corner) + " of " + std::to_string(positionCount));
        }
        triangles.push_back(corners);
    }
    return triangles;
}

UMatrix4<float> matrixOf(const float* values) {
    UMatrix4<float> matrix;
    const auto copied = floatsOf<16>(values);
    for (int i = 0; i < 16; ++i) matrix.at(i / 4, i % 4) = copied[static_cast<std::size_t>(i)];
    return matrix;
}

void copyTo(float* values, const UMatrix4<float>& matrix) {
    std::array<float, 16> copied;
    for (int i = 0; i < 16; ++i) copied[static_cast<std::size_t>(i)] = matrix.at(i / 4, i % 4);
    std::memcpy(static_cast<void*>(values), copied.data(), sizeof copied);
}

}  // namespace Tesk::c

#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "TeskDataBasic/UPoint3.h"

namespace App {

/// Positions, and three indices into them per triangle.
struct TriangleMesh {
    std::vector<UPoint3<float>> positions;
    std::vector<std::array<std::int32_t, 3>> triangles;
};

}  // namespace App

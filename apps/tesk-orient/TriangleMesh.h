#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "TeskDataBasic/UPoint3.h"
#include "TeskPartFiles/PartFiles.h"

namespace App {

/// Positions, and three indices into them per triangle.
struct TriangleMesh {
    std::vector<UPoint3<float>> positions;
    std::vector<std::array<std::int32_t, 3>> triangles;
};

/// The same mesh as the file library holds it, and back.
Tesk::PartMesh partMeshOf(TriangleMesh mesh);
TriangleMesh triangleMeshOf(Tesk::PartMesh part);

}  // namespace App

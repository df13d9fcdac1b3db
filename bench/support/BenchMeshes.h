#pragma once

#include <string>
#include <vector>

#include "shapes/Part.h"

struct BenchMesh {
    std::string name;
    Part part;
};

/// Every triangle cut into four at its edges' middles, again and again, until there are at least
/// `triangles`: what a fine mesher makes of a part with flat faces.
Part refined(Part part, std::size_t triangles);

/// Generated meshes from 12 triangles to at most `maxTriangles`, small ones first.
std::vector<BenchMesh> benchMeshes(std::size_t maxTriangles);

#pragma once

#include <string>

#include "TriangleMesh.h"
#include "Warning.h"

namespace App {

/// What a 3MF package builds: every item placed by its transform, components by theirs, in one
/// mesh, still in the model's unit.
struct ThreeMfContent {
    TriangleMesh mesh;
    std::string unit;       ///< micron, millimeter, centimeter, inch, foot or meter
    std::size_t items = 0;  ///< build items
    Warnings warnings;
};

/// Reads the core of 3MF and the model parts that the production extension spreads objects over.
/// Materials, slices, beams and the rest are passed over. A mirrored placement gets its triangles
/// turned, so that they still face outward. Throws InputFailure, also for objects that contain
/// themselves and for components that multiply into more triangles than any part has.
ThreeMfContent readThreeMf(std::string bytes);

}  // namespace App

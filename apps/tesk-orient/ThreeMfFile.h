#pragma once

#include <string>

#include "TriangleMesh.h"
#include "Warning.h"

namespace App {

/// What a 3MF package builds: every item placed by its transform, components by theirs, in one
/// mesh, in the unit of the package's root model.
struct ThreeMfContent {
    TriangleMesh mesh;
    std::string unit;       ///< micron, millimeter, centimeter, inch, foot or meter
    std::size_t items = 0;  ///< build items that build anything
    Warnings warnings;
};

/// Reads the core of 3MF and the model parts that the production extension spreads objects over;
/// each may have a unit of its own. Meshes of type "support" or "other" are left out, with a
/// warning. Materials and whatever else leaves shapes alone is passed over, elements of extensions
/// that no namespace is declared for, too. A mirrored placement gets its triangles turned, so that
/// they still face outward. Throws InputFailure, also where the model says that it needs an
/// extension that shapes parts, for objects that contain themselves and for components that
/// multiply into more triangles than any part has.
ThreeMfContent readThreeMf(std::string bytes);

}  // namespace App

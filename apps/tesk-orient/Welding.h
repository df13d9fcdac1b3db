#pragma once

#include "TriangleMesh.h"

namespace App {

/// Makes one vertex of all corners whose coordinates are equal as float numbers (so that -0 equals
/// +0). Vertices are numbered in the order in which the triangles first name them, those that none
/// names are dropped, and triangles keep their order. Coordinates must not be NaN. Linear.
TriangleMesh weld(const TriangleMesh& mesh);

}  // namespace App

#pragma once

#include <vector>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint2.h"
#include "TeskDataBasic/UPoint3.h"
#include "TeskPartFiles/PartFiles.h"

namespace App {

/// A convex polygon, counter-clockwise, without three corners on a line.
using Footprint = std::vector<UPoint2<double>>;

/// The convex hull of a mesh that a matrix has moved, seen from above.
Footprint footprintOf(const Tesk::PartMesh& mesh, const UMatrix4<double>& toPlate);

/// By how much one of two convex polygons has to be moved so that they no longer overlap: the least
/// overlap of their shadows on any line, by the separating axes theorem. 0 where they do not.
double overlapOf(const Footprint& a, const Footprint& b);

}  // namespace App

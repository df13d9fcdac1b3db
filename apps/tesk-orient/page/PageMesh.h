#pragma once

#include <cstddef>

#include "TriangleMesh.h"
#include "reports/ReportValues.h"

namespace App {

/// A mesh as a page holds it, for pictures only.
///
/// @param mesh   in millimetres, not empty
/// @param limit  the number of triangles to come down to where there are more
///
/// The result's members:
///
///     vertices, triangles   how many are here
///     sourceTriangles       how many the part has
///     deviationMm           about how far the surface moved; 0 where it is whole
///     originMm, stepMm      per axis: position = origin + number * step
///     positions             base64: x, y, z of each vertex, unsigned numbers of 16 bits
///     indices, indexBits    base64: three per triangle, unsigned numbers of 16 or 32 bits
///
/// Numbers are little-endian. Vertices stand in the order in which triangles first use them; those
/// that none uses are left out. Where a surface cannot be thinned out edge by edge, as a heap of
/// unconnected triangles, its vertices are gathered in cells.
Json pageMeshOf(const TriangleMesh& mesh, std::size_t limit);

}  // namespace App

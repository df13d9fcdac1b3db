#pragma once

#include <vector>

#include "orient/grid/SampleGrid.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/sampling/ColumnHits.h"
#include "orient/sampling/TriangleRectTree.h"
#include "orient/turn/TurnedPart.h"
#include "orient/turn/TurnedTriangle.h"

namespace Tesk::orient {

/// The bounding rectangle of a triangle seen from above. Coordinates that are NaN are ignored.
Rect rectOf(const TurnedTriangle& t);

/// Whether a point of the triangle's rectangle lies under the triangle.
bool isUnder(const TurnedTriangle& t, const UPoint2<float>& p);

/// The height of the triangle's plane over the point; NaN if the triangle is vertical.
float heightOver(const TurnedTriangle& t, const UPoint2<float>& p);

/// Measures the support that one turned part needs, sample by sample. A TriangleRectTree over all
/// triangles tells which of them may lie over a sample.
///
/// Gives the same bits as a SupportSampler, which goes triangle by triangle and is faster for many
/// poses of a fine mesh. Cost: O(n log n) for n triangles, plus O(log n) and the triangles of the
/// leaves that are reached for every sample.
///
/// @param areas           the area of every triangle
/// @param overhangCosine  a triangle overhangs if its unit normal's z is below −overhangCosine
SupportMeasures sampleWithTree(const FlatMesh& mesh, const std::vector<float>& areas,
                               const TurnedPart& part, const SampleGrid& grid,
                               float overhangCosine);

}  // namespace Tesk::orient

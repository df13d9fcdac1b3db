#pragma once

#include <vector>

#include "orient/grid/SampleGrid.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/sampling/ColumnHits.h"
#include "orient/turn/TurnedPart.h"

namespace Tesk::orient {

/// Measures the support that one turned part needs, sample by sample of a grid: a TriangleRectTree
/// over all triangles tells which of them may lie over a sample.
///
/// Gives the bits of a SupportSampler, which goes through the triangles instead of the samples and
/// suits many poses of a fine mesh. Cost: O(n log n) for n triangles, and for every sample O(log n)
/// and the triangles of the leaves over it.
///
/// @param areas           of every triangle
/// @param overhangCosine  a triangle overhangs where its unit normal's z is below −overhangCosine
SupportMeasures samplePose(const FlatMesh& mesh, const std::vector<float>& areas,
                           const TurnedPart& part, const SampleGrid& grid, float overhangCosine);

}  // namespace Tesk::orient

#pragma once

#include "orient/turn/TurnedPart.h"
#include "pose/facets/FacetMeasures.h"
#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// The area of a pose's overhanging facets whose support would rest on the part: the vertical line
/// down from the facet's centroid meets an upward facet that has a corner below the centroid, by
/// more than 0.001 mm plus 1e-5 of the centroid's height. The hit test is that of the support
/// sampling. Summed in mesh order, in double.
///
/// A TriangleRectTree over the facets that can lie below others finds them.
///
/// @param overhanging  the facets of overhangsOf()
float areaRestingOnPart(const PoseMesh& mesh, const orient::TurnedPart& part,
                        const UVector3<float>& up, const std::vector<std::int32_t>& overhanging);

}  // namespace Tesk::pose

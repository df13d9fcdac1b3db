#pragma once

#include "orient/turn/TurnedPart.h"
#include "pose/FacetMeasures.h"
#include "pose/PoseMesh.h"

namespace Tesk::pose {

/// The area of a pose's overhanging facets that have the part below them: below the facet's
/// centroid, by more than 0.001 mm and a hundred-thousandth of its height, lies a facet that faces
/// up and has a corner below the centroid, hit as the columns of the support's sampling hit one.
/// Summed in mesh order, in double.
///
/// A TriangleRectTree over the facets that can be below one finds them.
///
/// @param overhanging  the facets of overhangsOf()
float areaRestingOnPart(const PoseMesh& mesh, const orient::TurnedPart& part,
                        const UVector3<float>& up, const std::vector<std::int32_t>& overhanging);

}  // namespace Tesk::pose

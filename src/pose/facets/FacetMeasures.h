#pragma once

#include <cstdint>
#include <vector>

#include "orient/turn/TurnedPart.h"
#include "pose/mesh/PoseMesh.h"

namespace Tesk::pose {

/// Nothing within this of the plate needs support; facets within it touch the plate. In mm.
constexpr float kPlateGap = 0.2f;

/// Lower and upper bounds of a coordinate.
struct CoordinateRange {
    float least, most;
};

/// Bounds of one turned coordinate of all corners of a block of facets.
CoordinateRange coordinateRange(const PoseMesh& mesh, const orient::TurnedCoordinate& coordinate,
                                std::size_t block);

/// Not above the z of any corner of a block of facets, as the part turns them.
float leastHeight(const PoseMesh& mesh, const orient::TurnedPart& part, std::size_t block);

/// The downward facets of a part on z = 0 that lie within the gap.
struct Contact {
    std::vector<std::int32_t> facets;  ///< in mesh order
    float area = 0.0f;                 ///< seen from below; summed in mesh order, in double
};

/// @param part  stands on z = 0
/// @param up    the direction of the placed mesh that the pose turns to +Z
Contact contactOf(const PoseMesh& mesh, const orient::TurnedPart& part, const UVector3<float>& up);

/// The overhanging facets whose centroid lies above the gap.
struct Overhangs {
    std::vector<std::int32_t> facets;  ///< in mesh order
    float area = 0.0f;                 ///< summed in mesh order, in double
};

/// The parameters as contactOf() has them.
Overhangs overhangsOf(const PoseMesh& mesh, const orient::TurnedPart& part,
                      const UVector3<float>& up, float overhangCosine);

/// The area of overhangsOf(), but for rounding: whole blocks are added at once.
float overhangAreaOf(const PoseMesh& mesh, const orient::TurnedPart& part,
                     const UVector3<float>& up, float overhangCosine);

/// The number of patches that facets form, joined if they have a corner at the same place.
std::int32_t countIslands(const orient::FlatMesh& mesh, const std::vector<std::int32_t>& facets);

}  // namespace Tesk::pose

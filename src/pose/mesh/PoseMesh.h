#pragma once

#include <cstdint>
#include <vector>

#include "TeskDataBasic/UVector3.h"
#include "TeskMeshData/MeshKernel.h"
#include "orient/mesh/FlatMesh.h"
#include "pose/mesh/BlockBounds.h"

namespace Tesk::pose {

/// What all poses of a mesh share, found once per call: its flat copy, the facets as placed, and
/// the solid. Only read afterwards, by any number of threads.
struct PoseMesh {
    explicit PoseMesh(const MeshKernel& mesh);

    UVector3<float> normal(std::int32_t triangle) const {
        const auto i = static_cast<std::size_t>(triangle);
        return {normalX[i], normalY[i], normalZ[i]};
    }

    /// A vertex as placed, before any pose.
    UPoint3<float> placed(std::int32_t vertex) const {
        const UPoint3<float> p = flat.point(vertex);
        return isInPlace ? p : p * flat.placement;
    }

    orient::FlatMesh flat;
    bool isInPlace = false;
    /// Unit normals of the placed facets, (b − a) × (c − b); zero without area.
    std::vector<float> normalX, normalY, normalZ;
    std::vector<float> areas;  ///< of the placed facets
    /// Per block of facets, bounds of their corners in the mesh's own frame, and of their normals.
    std::vector<BlockBounds> facetBounds, normalBounds;
    std::vector<double> blockAreas;  ///< of a block's facets together
    /// Per block of kept vertices, bounds of their placed positions; and per group of blocks.
    std::vector<BlockBounds> vertexBounds, vertexGroupBounds;
    double surface = 0.0;  ///< sum of the areas
    /// Volume of the placed solid, by signed tetrahedra; never negative. Of an open mesh what comes
    /// of the sum.
    double volume = 0.0;
    /// Centroid of the solid in the mesh's own frame; of the surface if the volume is next to
    /// nothing, or if the solid's lies outside the box, as an open mesh's may.
    UVector3<double> centroid;
};

}  // namespace Tesk::pose

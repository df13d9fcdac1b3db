#pragma once

#include <array>
#include <span>
#include <vector>

#include "TeskDataBasic/UVector3.h"
#include "TeskMeshData/MeshKernel.h"
#include "orient/grid/SampleGrid.h"
#include "orient/mesh/FlatMesh.h"
#include "orient/sampling/HittableTriangles.h"
#include "orient/sampling/SupportSampling.h"
#include "orient/turn/TurnedPart.h"

namespace Tesk::orient {

/// Measures candidate build directions: turns the placed mesh about the centre of its placed box
/// so that the direction points along +Z, and lifts it to `baseHeight` if that is above −1.
///
/// Support is sampled in columns: through the middle of each cell of a grid under the part's
/// footprint (a cell is about a fortieth of the footprint's shorter side, and the grid reaches one
/// unit beyond it) runs a vertical line, and the triangles that it meets tell where the column
/// enters and leaves the part.
///
/// Holds working memory; one per thread. Any number of them may share a mesh.
class OrientEvaluator {
 public:
    /// Keeps references to mesh and areas.
    ///
    /// @param areas           area of every triangle, in mesh order
    /// @param overhangAngle   degrees
    /// @param computeSupport  where it is false, the four support measures are 0
    OrientEvaluator(const std::vector<float>& areas, const FlatMesh& mesh, float overhangAngle,
                    bool computeSupport, float baseHeight);

    /// Turns the part for up to kGroupSize directions, any length above zero, which go through the
    /// mesh together. evaluate() then speaks of them.
    void begin(std::span<const UVector3<float>> directions);

    /// Measures the direction at a place of the group, and sets all six.
    ///
    /// @param height         z extent of the turned part
    /// @param supportVolume  sum over columns of the drops below overhanging triangles, times the
    ///                       cell
    /// @param overhangArea   areas of the overhanging triangles, once per column that meets one
    /// @param projectedArea  area of the columns that meet at least two triangles
    /// @param boxVolume      volume of the turned part's box
    /// @param reservedScore  always 0
    void evaluate(std::size_t place, float& height, float& supportVolume, float& overhangArea,
                  float& projectedArea, float& boxVolume, float& reservedScore);

 private:
    const FlatMesh& m_mesh;
    float m_overhangCosine;
    bool m_computeSupport;
    float m_baseHeight;
    std::array<TurnedPart, kGroupSize> m_parts;
    std::array<SampleGrid, kGroupSize> m_grids;
    HittableFinder m_finder;
    HittableTriangles m_hittable;
    SupportSampler m_sampler;
};

/// Measures one build direction of a mesh alone: gives the bits of an OrientEvaluator, by a search
/// in a TriangleRectTree for every sample (see samplePose()). Reads the mesh only; may run at once
/// for any number of directions. Sets all six outputs, which are those of
/// OrientEvaluator::evaluate().
///
/// @param areas           area of every triangle as placed, in mesh order
/// @param mesh            not null
/// @param direction       any length above zero
/// @param overhangAngle   degrees
/// @param computeSupport  where it is false, the four support measures are 0
/// @param baseHeight      the z of the turned part's lowest point; −1 or less leaves it where the
///                        turn put it
void evaluateOrient(const std::vector<float>& areas, const MeshKernel* mesh,
                    UVector3<float> direction, float overhangAngle, bool computeSupport,
                    float& height, float& supportVolume, float& overhangArea, float& projectedArea,
                    float& boxVolume, float& reservedScore, const float& baseHeight);

}  // namespace Tesk::orient

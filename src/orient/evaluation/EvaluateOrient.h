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

/// The measures of one build direction. The four that concern support are 0 if it is not computed.
struct OrientMeasures {
    /// z extent of the turned part.
    float height = 0.0f;
    /// Sum over columns of the drops below overhanging triangles, times the area of a cell.
    float supportVolume = 0.0f;
    /// Areas of the overhanging triangles, each once per column that meets it.
    float overhangArea = 0.0f;
    /// Area of the columns that meet at least two triangles.
    float projectedArea = 0.0f;
    /// Volume of the turned part's box.
    float boxVolume = 0.0f;
    /// Always 0.
    float reservedScore = 0.0f;
};

/// Measures candidate build directions: turns the placed mesh about the centre of its placed box
/// so that the direction points along +Z, and lifts it to `baseHeight` if that is above −1.
///
/// Support is sampled in columns: vertical lines through the middles of the cells of a grid under
/// the part. The triangles that a column meets tell where it enters and leaves the part. A cell is
/// about a fortieth of the footprint's shorter side; the grid reaches one unit beyond the
/// footprint.
///
/// Holds working memory, so each thread needs its own. Any number of them may share a mesh.
class OrientEvaluator {
 public:
    /// Keeps references to mesh and areas.
    ///
    /// @param areas           area of every triangle, in mesh order
    /// @param overhangAngle   degrees
    OrientEvaluator(const std::vector<float>& areas, const FlatMesh& mesh, float overhangAngle,
                    bool computeSupport, float baseHeight);

    /// Turns the part for a group of directions in one pass over the mesh. evaluate() then measures
    /// them.
    ///
    /// @param directions  1 to kGroupSize, of any length above zero
    void begin(std::span<const UVector3<float>> directions);

    /// Takes parts that standParts() has set down. evaluate() then gives the same bits as for the
    /// direction +Z and the base height 0 of a mesh with that placement.
    ///
    /// @param parts  1 to kGroupSize
    void begin(std::span<const TurnedPart> parts);

    /// The part as begin() turned it, by its index in the group.
    const TurnedPart& part(std::size_t index) const { return m_parts[index]; }

    /// Measures one direction of the group, given by its index in it.
    OrientMeasures evaluate(std::size_t index);

 private:
    void findHittable(std::span<const TurnedPart> parts);

    const FlatMesh& m_mesh;
    float m_overhangCosine;
    bool m_computeSupport;
    float m_baseHeight;
    std::size_t m_groupSize = 0;
    std::array<TurnedPart, kGroupSize> m_parts;
    std::array<SampleGrid, kGroupSize> m_grids;
    HittableFinder m_finder;
    HittableTriangles m_hittable;
    SupportSampler m_sampler;
};

/// Measures a single build direction. Gives the same bits as an OrientEvaluator, but searches a
/// TriangleRectTree for every sample (see sampleWithTree()). Only reads the mesh, so it may run for
/// any number of directions at once. Sets all six outputs, which are the fields of OrientMeasures.
///
/// @param areas           area of every triangle as placed, in mesh order
/// @param mesh            not null
/// @param direction       any length above zero
/// @param overhangAngle   degrees
/// @param computeSupport  false leaves the four support measures at 0
/// @param baseHeight      the z of the turned part's lowest point; −1 or less leaves it where the
///                        turn put it
void evaluateOrient(const std::vector<float>& areas, const MeshKernel* mesh,
                    UVector3<float> direction, float overhangAngle, bool computeSupport,
                    float& height, float& supportVolume, float& overhangArea, float& projectedArea,
                    float& boxVolume, float& reservedScore, const float& baseHeight);

}  // namespace Tesk::orient

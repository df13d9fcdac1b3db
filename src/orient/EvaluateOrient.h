#pragma once

#include <vector>

#include "FlatMesh.h"
#include "TeskDataBasic/UVector3.h"

/// Working memory of evaluations that run one after another on one thread.
struct EvaluationBuffers {
    std::vector<float> x, y, z;  ///< the turned vertices, numbered as in the FlatMesh
};

/// Measures one candidate build direction: turns the placed mesh about the centre of its placed
/// box so that `direction` points along +Z, lifts it to `baseHeight` if that is above −1, and sets
/// all six outputs. The four support measures are 0 where `computeSupport` is false.
///
/// Support is sampled in columns: through the middle of each cell of a grid under the part's
/// footprint (a cell is about a fortieth of the footprint's shorter side, and the grid reaches one
/// unit beyond it) runs a vertical line, and the triangles that it meets tell where the column
/// enters and leaves the part.
///
/// @param areas          area of every triangle, in mesh order
/// @param mesh           only read; any number of evaluations may share it
/// @param direction      any length above zero
/// @param overhangAngle  degrees
/// @param height         z extent of the turned part
/// @param supportVolume  sum over columns of the drops below overhanging triangles, times the cell
/// @param overhangArea   areas of the overhanging triangles, once per column that meets one
/// @param projectedArea  area of the columns that meet at least two triangles
/// @param boxVolume      volume of the turned part's box
/// @param reservedScore  always 0
/// @param buffers        reused from call to call; what it holds on entry does not matter
void evaluateOrient(const std::vector<float>& areas, const FlatMesh& mesh,
                    UVector3<float> direction, float overhangAngle, bool computeSupport,
                    float& height, float& supportVolume, float& overhangArea, float& projectedArea,
                    float& boxVolume, float& reservedScore, const float& baseHeight,
                    EvaluationBuffers& buffers);

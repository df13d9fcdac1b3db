#pragma once

#include <vector>

#include "TeskMeshData/MeshKernel.h"

/// The six measures of one candidate direction.
struct PlainScores {
    float height = 0.0f;
    float supportVolume = 0.0f;
    float overhangArea = 0.0f;
    float projectedArea = 0.0f;
    float boxVolume = 0.0f;
    float reservedScore = 0.0f;
};

/// How the plain evaluation looks for the triangles at a sample point.
enum class PlainSearch {
    /// Tries every triangle at every point.
    kEveryTriangle,
    /// Tries, at the points of one column, the triangles whose rectangle reaches that column's x.
    /// A triangle counts at a point only where the point lies in its rectangle, so the others could
    /// not count: the result is the same, and big meshes become affordable.
    kTrianglesOfColumn
};

/// The area of every triangle as the kernel's matrix places it.
std::vector<float> plainAreas(const MeshKernel& mesh);

/// What evaluating a direction means, as plainly as it can be said: loops over everything, every
/// corner taken through the whole transform again wherever it is needed, no tree, no copy of the
/// mesh. Float and double, and the order of every sum, are part of the meaning.
PlainScores plainEvaluation(const std::vector<float>& areas, const MeshKernel& mesh,
                            const UVector3<float>& direction, float overhangAngle,
                            bool computeSupport, float baseHeight, PlainSearch search);

/// The rotation axis and angle that bring a direction onto +Z.
float plainAngle(const UVector3<float>& direction);
UVector3<float> plainAxis(const UVector3<float>& direction);

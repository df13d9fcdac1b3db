#pragma once

#include <array>
#include <optional>

#include "MinBoundingBox.h"
#include "TriangleMesh.h"

namespace App {

/// A box around a part, in one reading whatever operation it came from.
struct PartBox {
    UVector3<float> center;
    std::array<UVector3<float>, 3> axes;
    std::array<float, 3> halfExtents;  ///< along the axes

    double volume() const;
};

/// The positions that triangles use.
std::vector<UPoint3<float>> usedPositions(const TriangleMesh& mesh);

/// The box's twelve triangles, facing outward.
TriangleMesh meshOf(const PartBox& box);

/// The volume that a closed mesh encloses, mm³; nothing for an open one.
std::optional<double> enclosedVolume(const TriangleMesh& mesh);

}  // namespace App

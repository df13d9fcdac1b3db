#pragma once

#include <array>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"
#include "TriangleMesh.h"

namespace App {

/// A box around a part, in one reading whatever operation it came from: extents are half-lengths
/// and the axes are right-handed.
struct PartBox {
    UVector3<float> center;
    std::array<UVector3<float>, 3> axes;
    std::array<float, 3> halfExtents;  ///< along the axes

    double volume() const;

    /// The turn about the box's centre that brings its axes to X, Y and Z, for row vectors.
    UMatrix4<float> alignment() const;
};

/// The box's twelve triangles, facing outward.
TriangleMesh meshOf(const PartBox& box);

}  // namespace App

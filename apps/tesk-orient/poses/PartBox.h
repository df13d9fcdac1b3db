#pragma once

#include <array>

#include "MinBoundingBox.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"
#include "TriangleMesh.h"

namespace App {

/// A box around a part. Whichever operation found it, its extents are half-lengths and its axes are
/// right-handed.
struct PartBox {
    UVector3<float> center;
    std::array<UVector3<float>, 3> axes;
    std::array<float, 3> halfExtents;  ///< along the axes

    double volume() const;

    /// The turn about the box's centre that brings its axes to X, Y and Z, for row vectors.
    UMatrix4<float> alignment() const;
};

/// What the extents of a found box are.
enum class Lengths { kHalf, kFull };

/// A box that the library found. A left-handed one gets its first axis reversed, so that the third
/// stays the one that was asked for; the box is the same.
PartBox readAs(const OrientedBox3& found, Lengths extents);

/// The box's twelve triangles, facing outward.
TriangleMesh meshOf(const PartBox& box);

}  // namespace App

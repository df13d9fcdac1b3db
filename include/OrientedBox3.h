#pragma once

#include "TeskDataBasic/UVector3.h"

/// A box in any orientation: the points center + t0·axis[0] + t1·axis[1] + t2·axis[2] with
/// |t_i| ≤ extent[i]. Lengths are in the unit of the points, in their frame.
struct OrientedBox3 {
    UVector3<float> center;
    /// Unit vectors, orthogonal to each other; all (1, 1, 1) if there is no box.
    UVector3<float> axis[3];
    /// Half the size along each axis; from MinBoundingBox::generateOBB() the full size.
    UVector3<float> extent;
};

static_assert(sizeof(OrientedBox3) == 60);

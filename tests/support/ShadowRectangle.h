#pragma once

#include "TeskDataBasic/UVector3.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

/// The least rectangle around a hull's shadow along an axis.
struct ShadowRectangle {
    long double area = 0;
    long double extent = 0;  ///< the farthest that two corners of the shadow are apart
    long double depth = 0;   ///< of the hull, along the axis
};

/// Found in long double by a look at every direction of an edge of the shadow, without merging
/// corners. Takes time by the square of the shadow's corners.
///
/// @param hull  of at least one vertex
/// @param axis  finite, not zero; any length
ShadowRectangle leastShadowRectangle(const gte::ConvexHull3& hull, const UVector3<float>& axis);

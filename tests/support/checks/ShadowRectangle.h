#pragma once

#include "TeskDataBasic/UVector3.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

/// The least rectangle around a hull's shadow along an axis.
struct ShadowRectangle {
    long double area = 0;
    long double extent = 0;  ///< of the shadow: the longest side of these rectangles
    long double depth = 0;   ///< of the hull, along the axis
};

/// Found in long double, and without an outline that rounding could break: of all hull edges that
/// may lie on the shadow's outline, each as a side of the rectangle, with its size from all
/// vertices. Takes time by the product of the two.
///
/// @param hull  of at least one vertex
/// @param axis  finite, not zero; any length
ShadowRectangle leastShadowRectangle(const gte::ConvexHull3& hull, const UVector3<float>& axis);

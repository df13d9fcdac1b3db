#pragma once

#include <string>
#include <vector>

#include "TeskSDKCommonTools/ConvexHull3.h"
#include "shapes/BoxShapes.h"

/// What is wrong with a hull of some points, in words; empty where nothing is. Everything is
/// decided in whole numbers of the hull's grid, without rounding:
/// - its dimension is the points';
/// - every vertex is one of the rounded points, and they go by ascending x, y, z;
/// - no rounded point lies outside any triangle's plane, nor outside a flat hull's outline;
/// - no triangle has zero area; every directed edge has its opposite, once each;
/// - the edge list names every edge once, with f0 running from a to b and f1 back, a below b;
/// - the Euler number is 2;
/// - triangles in one plane form one fan about its lowest vertex, and fans go by their lowest
///   vertex and the one after it;
/// - no vertex lies inside an edge or a face.
/// Takes time by the product of triangles and points.
std::string faultOf(const gte::ConvexHull3& hull, const Points& points);

/// The same for the hull of very many points in space, which are not all compared with all
/// triangles: its numbers are those of a closed surface, and that is convex along every edge.
std::string faultOfLargeSolid(const gte::ConvexHull3& hull, const Points& points);

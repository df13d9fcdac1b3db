#pragma once

#include <string>
#include <vector>

#include "BoxShapes.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

/// What is wrong with a hull of some points, in words; empty where nothing is. Everything is
/// decided in whole numbers of the hull's grid, without rounding:
/// - every vertex is one of the rounded points, and they go by ascending x, y, z;
/// - no rounded point lies outside any triangle's plane;
/// - no triangle has zero area; every directed edge has its opposite, once each;
/// - the edge list names every edge once, with f0 running from a to b and f1 back, a below b;
/// - the surface is in one piece, of Euler number 2;
/// - no vertex lies inside an edge or a face: those at its triangles' other corners span a corner.
std::string faultOf(const gte::ConvexHull3& hull, const Points& points);

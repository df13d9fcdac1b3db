#pragma once

#include <array>
#include <string>
#include <vector>

using PlanePoints = std::vector<std::array<double, 2>>;

/// What is wrong with the convex hull of points in a plane, given as point indices, in words; empty
/// where nothing is. Decided without rounding, for coordinates of 1e-90 to 1e90 and zero:
/// - it is strictly convex, counter-clockwise, from the point of lowest x, then lowest y, on;
/// - no finite point lies outside it;
/// - of equal points it names the first;
/// - points on a line have their two ends, equal points one, and no finite points none.
std::string faultOfPolygon(const std::vector<int>& corners, const PlanePoints& points);

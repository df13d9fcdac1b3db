#pragma once

#include <vector>

#include "shapes/Part.h"

/// The box between two opposite corners: 8 vertices, 12 triangles, facing outward.
Part makeBox(const UPoint3<float>& low, const UPoint3<float>& high);

/// A closed latitude-longitude sphere about the origin with at least `triangles` triangles.
Part makeSphere(float radius, int triangles);

/// A cylinder about the z axis, z from 0 to `height`, with `segments` sides.
Part makeCylinder(float radius, float height, int segments);

/// n unrelated triangles with corners anywhere in a box of the given size.
Part makeSoup(int n, float size, std::uint64_t seed);

/// n triangles of different shapes and sizes about one centroid, the origin.
Part makeCommonCentroid(int n);

/// n times the same triangle, each with vertices of its own.
Part makeCopies(int n);

/// A wavy height field with n × n cells over [0, size]²: many small triangles, open at the rim.
Part makeWavySheet(int n, float size);

/// Matrices that place a part: identity, moved, turned, scaled up and down, mirrored, sheared, and
/// all of it at once.
struct Placement {
    const char* name;
    UMatrix4<float> matrix;
};
const std::vector<Placement>& placements();

#pragma once

#include <string>
#include <vector>

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint3.h"
#include "tools/TestRandom.h"

/// Point sets for hulls and boxes.
using Points = std::vector<UPoint3<float>>;

struct NamedPoints {
    std::string name;
    Points points;
};

/// The corners of [0, x] × [0, y] × [0, z].
Points boxCorners(float x, float y, float z);

/// Four corners of the cube [−1, 1]³.
Points tetrahedronCorners();

/// (0, ±0.75, ±1) and cyclic: the best box is parallel to edges, not flush with a face.
Points twelvePoints();

/// The triangle (0,0), (0,10), (10,10) over XZ, from y = 0 to 6.
Points wedgeCorners();

/// A prism over a regular polygon of radius 1.
Points prismCorners(int sides, float height);

/// A box with rounded edges, as a mesh of it samples it.
Points roundedBox(float x, float y, float z, float radius, int steps);

/// Corners of a few boxes side by side and on top of each other, like a bracket.
Points bracketCorners(TestRandom& random);

Points pointsInBall(int count, TestRandom& random);
Points pointsOnSphere(int count, TestRandom& random);
Points pointsInCube(int count, TestRandom& random);

/// Whole coordinates 0 .. size − 1.
Points pointsOnGrid(int count, int size, TestRandom& random);

/// Each point taken through a matrix.
Points transformed(const Points& points, const UMatrix4<float>& matrix);

/// Each coordinate moved by up to the amount.
Points withNoise(const Points& points, double amount, TestRandom& random);

/// A rotation about a random axis; half of them by a multiple of 90° about a coordinate axis, with
/// the rounding of sine and cosine left in.
UMatrix4<float> randomTurn(TestRandom& random);

/// A rotation about a coordinate axis by a multiple of 90° in float, or by 1e-1 .. 1e-10 more.
UMatrix4<float> nearlyRightTurn(TestRandom& random);

/// Points exactly in a plane through the origin, often oblique, some of them repeated.
Points pointsInPlane(int count, TestRandom& random);

/// Points exactly on a line through the origin, some of them repeated.
Points pointsOnLine(int count, TestRandom& random);

/// Points close to a line of length 60: 1e-2 .. 1e-10 beside it.
Points needle(int count, TestRandom& random);

/// The fixed sets that every search is compared on; small ones only where the tests are small.
std::vector<NamedPoints> comparisonPoints();
std::vector<NamedPoints> comparisonPoints(bool isSmall);

/// A small part with flat sides, noise of 1e-1 .. 1e-23 or none, turned.
Points noisyPart(TestRandom& random);

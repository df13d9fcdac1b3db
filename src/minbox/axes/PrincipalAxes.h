#pragma once

#include <array>

#include "MinBoundingBox.h"
#include "TeskDataBasic/UMatrix4.h"

/// The box along the principal axes, with full side lengths: MinBoundingBox::generateOBB().
OrientedBox3 principalAxesBox(const UPoint3<float>* points, int n);

/// The population covariance of points, of which there are some, in the upper left of the matrix.
UMatrix4<float> covarianceOf(const UPoint3<float>* points, int n);

struct Eigenvectors {
    std::array<float, 3> values{};
    std::array<UVector3<float>, 3> vectors;
    bool isFinite = true;
};

/// Of a symmetric matrix, by cyclic Jacobi sweeps. Source: C. G. J. Jacobi, "Über ein leichtes
/// Verfahren, die in der Theorie der Säkularstörungen vorkommenden Gleichungen numerisch
/// aufzulösen", Crelle's Journal 30 (1846).
Eigenvectors eigenvectorsOf(UMatrix4<float> matrix);

/// The order of the box's axes: the largest eigenvalue first; where that is the second strictly,
/// the other two follow in the order first, third unless the third is not above the first.
std::array<int, 3> axisOrder(const std::array<float, 3>& eigenvalues);

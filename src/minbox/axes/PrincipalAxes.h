#pragma once

#include <array>

#include "OrientedBox3.h"
#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UPoint3.h"

namespace Tesk::minbox {

/// The box along the principal axes, with full side lengths: MinBoundingBox::generateOBB().
OrientedBox3 principalAxesBox(const UPoint3<float>* points, int n);

/// The population covariance of n points, n > 0, in the upper left of the matrix.
UMatrix4<float> covarianceOf(const UPoint3<float>* points, int n);

struct Eigenvectors {
    std::array<float, 3> values{};
    std::array<UVector3<float>, 3> vectors;
    bool isFinite = true;
};

/// The eigenvectors of a symmetric matrix, by cyclic Jacobi sweeps.
///
/// Source: C. G. J. Jacobi, "Über ein leichtes Verfahren, die in der Theorie der Säkularstörungen
/// vorkommenden Gleichungen numerisch aufzulösen", Crelle's Journal 30 (1846).
Eigenvectors eigenvectorsOf(UMatrix4<float> matrix);

/// The order of the box's axes, as indices of eigenvalues: the largest first, then the larger of
/// the other two, or the smaller if the largest is eigenvalue 1.
std::array<int, 3> axisOrder(const std::array<float, 3>& eigenvalues);

}  // namespace Tesk::minbox

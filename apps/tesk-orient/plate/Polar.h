#pragma once

#include <optional>

#include "TeskDataBasic/UMatrix4.h"

namespace App {

/// A linear map for row vectors, taken apart: stretch · rotation. All matrices are without
/// translation.
struct PolarParts {
    UMatrix4<double> stretch;   ///< symmetric; with negative eigenvalues only where the map mirrors
    UMatrix4<double> rotation;  ///< of determinant 1
};

/// The polar decomposition of a linear map, whose translation does not count. Nothing for a map
/// that is not finite, or that makes a part flat: one whose condition number is above 1e5.
///
/// N. J. Higham, "Computing the polar decomposition — with applications", 1986.
std::optional<PolarParts> polarPartsOf(const UMatrix4<double>& map);

/// A stretch without the noise of the digits that it was written with: exactly the identity, or
/// minus it, where it is either to within 1e-5, and else rounded to decimals, one millionth or less
/// of the largest entry each.
UMatrix4<double> snapped(const UMatrix4<double>& stretch);

/// Whether two stretches are equal to within 1e-5 of their largest entry.
bool areAlike(const UMatrix4<double>& a, const UMatrix4<double>& b);

/// Without translation: the transposed map, which takes a rotation back.
UMatrix4<double> transposed(const UMatrix4<double>& map);

/// Without translation: the map that takes this one back. The determinant must not be 0.
UMatrix4<double> inverseOf(const UMatrix4<double>& map);

double determinantOf(const UMatrix4<double>& map);

/// The linear part alone.
UMatrix4<double> linearOf(const UMatrix4<double>& map);

}  // namespace App

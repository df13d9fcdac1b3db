#pragma once

#include <vector>

#include "TeskDataBasic/UMatrix4.h"

namespace App {

/// The rotations that bring a shape into one pose, the one that was found first: those that differ
/// from it by a turn about Z that the pose does not mind.
using PoseRotations = std::vector<UMatrix4<double>>;

/// By how much a pose may be spun about Z.
enum class Spins { kQuarters, kHalves };

/// A rotation of a pose as it was found, in single precision, and those that are as good. It is
/// made exact: without the noise of its digits, and where it is to within 1e-6, with entries 0, 1
/// and −1 only.
PoseRotations rotationsOf(const UMatrix4<float>& rotation, Spins spins);

/// The rotation of single precision, made exact as above.
UMatrix4<double> exactRotation(const UMatrix4<float>& rotation);

/// Of the rotations the one that is reached from the present one by the least turn; of equal turns
/// the first.
///
/// @param rotations  not empty
UMatrix4<double> nearestTo(const UMatrix4<double>& present, const PoseRotations& rotations);

/// Whether two rotations differ by less than a small angle, a hundredth of a degree.
bool isSameRotation(const UMatrix4<double>& a, const UMatrix4<double>& b, double withinDeg = 0.01);

/// The turn that follows the present rotation to make it another one; exactly the identity where
/// they are the same.
UMatrix4<double> turnBetween(const UMatrix4<double>& present, const UMatrix4<double>& target);

/// To single precision, each entry rounded once.
UMatrix4<float> toFloat(const UMatrix4<double>& matrix);

UMatrix4<double> toDouble(const UMatrix4<float>& matrix);

}  // namespace App

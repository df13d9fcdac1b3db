#include "plate/ItemTurn.h"

#include <cmath>
#include <numbers>

#include "plate/Polar.h"

namespace App {

namespace {

using Matrix = UMatrix4<double>;

template <class To, class From>
UMatrix4<To> converted(const UMatrix4<From>& matrix) {
    UMatrix4<To> result;
    for (int row = 0; row < 4; ++row) {
        for (int col = 0; col < 4; ++col) {
            result.at(row, col) = static_cast<To>(matrix.at(row, col));
        }
    }
    return result;
}

/// By quarter turns about Z, without any rounding.
Matrix quarterTurns(int count) {
    constexpr double kCos[] = {1.0, 0.0, -1.0, 0.0};
    constexpr double kSin[] = {0.0, 1.0, 0.0, -1.0};
    Matrix m;
    m.at(0, 0) = m.at(1, 1) = kCos[count];
    m.at(0, 1) = kSin[count];
    m.at(1, 0) = -kSin[count];
    return m;
}

/// The sum of the squares of all differences: 4 (1 − cos) of the angle between two rotations, and
/// 2 times its square where that is small.
double squaredDistance(const Matrix& a, const Matrix& b) {
    double sum = 0.0;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            const double difference = a.at(row, col) - b.at(row, col);
            sum += difference * difference;
        }
    }
    return sum;
}

/// The axes' exact map, where the rotation is one to within its noise.
Matrix rounded(const Matrix& rotation) {
    constexpr double kNoise = 1e-6;
    Matrix whole;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            const double entry = rotation.at(row, col);
            const double nearest = std::round(entry) + 0.0;
            if (std::fabs(entry - nearest) > kNoise) return rotation;
            whole.at(row, col) = nearest;
        }
    }
    return whole;
}

}  // namespace

UMatrix4<float> toFloat(const Matrix& matrix) {
    return converted<float>(matrix);
}

Matrix toDouble(const UMatrix4<float>& matrix) {
    return converted<double>(matrix);
}

Matrix exactRotation(const UMatrix4<float>& rotation) {
    const auto parts = polarPartsOf(toDouble(rotation));
    return parts ? rounded(parts->rotation) : Matrix();
}

PoseRotations rotationsOf(const UMatrix4<float>& rotation, Spins spins) {
    const Matrix exact = exactRotation(rotation);
    PoseRotations rotations;
    for (int quarter = 0; quarter < 4; quarter += spins == Spins::kQuarters ? 1 : 2) {
        rotations.push_back(exact * quarterTurns(quarter));
    }
    return rotations;
}

Matrix nearestTo(const Matrix& present, const PoseRotations& rotations) {
    // So that rounding does not decide between equal turns.
    constexpr double kTie = 1e-9;
    const Matrix* nearest = &rotations.front();
    for (const Matrix& rotation : rotations) {
        if (squaredDistance(present, rotation) < squaredDistance(present, *nearest) - kTie) {
            nearest = &rotation;
        }
    }
    return *nearest;
}

bool isSameRotation(const Matrix& a, const Matrix& b, double withinDeg) {
    const double within = withinDeg * std::numbers::pi / 180.0;
    return squaredDistance(a, b) < 2.0 * within * within;
}

Matrix turnBetween(const Matrix& present, const Matrix& target) {
    if (isSameRotation(present, target)) return {};
    return rounded(transposed(present) * target);
}

}  // namespace App

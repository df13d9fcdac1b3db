#include "plate/Polar.h"

#include <algorithm>
#include <cmath>

namespace App {

namespace {

using Matrix = UMatrix4<double>;

constexpr double kAlike = 1e-5;
constexpr double kFlat = 1e5;

template <class Visit>
void forEachCell(Visit visit) {
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) visit(row, col);
    }
}

double largestEntry(const Matrix& m) {
    double largest = 0.0;
    // A comparison that NaN makes the largest.
    forEachCell([&](int row, int col) {
        const double size = std::fabs(m.at(row, col));
        if (!(size <= largest)) largest = size;
    });
    return largest;
}

double normOf(const Matrix& m) {
    double sum = 0.0;
    forEachCell([&](int row, int col) { sum += m.at(row, col) * m.at(row, col); });
    return std::sqrt(sum);
}

/// a · A + b · B
Matrix combined(double a, const Matrix& matrixA, double b, const Matrix& matrixB) {
    Matrix sum;
    forEachCell([&](int row, int col) {
        sum.at(row, col) = a * matrixA.at(row, col) + b * matrixB.at(row, col);
    });
    return sum;
}

Matrix scaled(const Matrix& m, double factor) {
    return combined(factor, m, 0.0, m);
}

double cofactor(const Matrix& m, int row, int col) {
    const int r1 = (row + 1) % 3;
    const int r2 = (row + 2) % 3;
    const int c1 = (col + 1) % 3;
    const int c2 = (col + 2) % 3;
    return m.at(r1, c1) * m.at(r2, c2) - m.at(r1, c2) * m.at(r2, c1);
}

/// The orthogonal factor by Newton's iteration: the mean of a matrix and its inverse transposed,
/// scaled so that it takes about six steps.
Matrix orthogonalFactor(Matrix x) {
    constexpr int kMostSteps = 30;
    constexpr double kConverged = 1e-13;
    for (int step = 0; step < kMostSteps; ++step) {
        const Matrix y = transposed(inverseOf(x));
        const double scale = std::sqrt(normOf(y) / normOf(x));
        const Matrix next = combined(0.5 * scale, x, 0.5 / scale, y);
        const bool isDone = normOf(combined(1.0, next, -1.0, x)) <= kConverged;
        x = next;
        if (isDone) break;
    }
    return combined(0.5, x, 0.5, transposed(inverseOf(x)));
}

}  // namespace

Matrix linearOf(const Matrix& map) {
    return scaled(map, 1.0);
}

Matrix transposed(const Matrix& map) {
    Matrix result;
    forEachCell([&](int row, int col) { result.at(row, col) = map.at(col, row); });
    return result;
}

double determinantOf(const Matrix& m) {
    return m.at(0, 0) * cofactor(m, 0, 0) + m.at(0, 1) * cofactor(m, 0, 1) +
           m.at(0, 2) * cofactor(m, 0, 2);
}

Matrix inverseOf(const Matrix& map) {
    const double determinant = determinantOf(map);
    Matrix result;
    forEachCell(
        [&](int row, int col) { result.at(row, col) = cofactor(map, col, row) / determinant; });
    return result;
}

std::optional<PolarParts> polarPartsOf(const Matrix& map) {
    const double size = largestEntry(map);
    if (!(size > 0.0) || !std::isfinite(size)) return std::nullopt;
    // Of size 1, so that no product of three entries leaves the range.
    const Matrix unit = combined(1.0 / size, map, 0.0, Matrix());
    const double determinant = determinantOf(unit);
    if (determinant == 0.0) return std::nullopt;
    const double condition = normOf(unit) * normOf(inverseOf(unit));
    if (!(condition <= kFlat)) return std::nullopt;
    const double sign = determinant < 0.0 ? -1.0 : 1.0;
    PolarParts parts;
    parts.rotation = scaled(orthogonalFactor(unit), sign);
    const Matrix stretch = unit * transposed(parts.rotation);
    parts.stretch = combined(0.5 * size, stretch, 0.5 * size, transposed(stretch));
    return parts;
}

bool areAlike(const Matrix& a, const Matrix& b) {
    const double difference = largestEntry(combined(1.0, a, -1.0, b));
    return difference <= kAlike * std::max(largestEntry(a), largestEntry(b));
}

Matrix snapped(const Matrix& stretch) {
    for (const double sign : {1.0, -1.0}) {
        const Matrix plain = scaled(Matrix(), sign);
        if (areAlike(stretch, plain)) return plain;
    }
    // A little below a power of ten counts as that power, whatever the last digits are.
    double size = largestEntry(stretch) * (1.0 + 1e-9);
    double unit = 1e6;
    for (; size >= 10.0; size /= 10.0) unit /= 10.0;
    for (; size < 1.0; size *= 10.0) unit *= 10.0;
    Matrix result;
    forEachCell([&](int row, int col) {
        result.at(row, col) = std::round(stretch.at(row, col) * unit) / unit;
    });
    return result;
}

}  // namespace App

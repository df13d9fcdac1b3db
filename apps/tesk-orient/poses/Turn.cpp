#include "poses/Turn.h"

#include <fmt/format.h>

#include <array>
#include <cmath>

#include "reports/ReportText.h"

namespace App {

namespace {

using Quaternion = std::array<double, 4>;  // w, x, y, z

/// The quaternion times four times its component of index k.
Quaternion scaledBy(const UMatrix4<float>& matrix, std::size_t k) {
    const auto m = [&](int row, int col) { return static_cast<double>(matrix.at(row, col)); };
    const double wx = m(1, 2) - m(2, 1);
    const double wy = m(2, 0) - m(0, 2);
    const double wz = m(0, 1) - m(1, 0);
    const double xy = m(0, 1) + m(1, 0);
    const double xz = m(0, 2) + m(2, 0);
    const double yz = m(1, 2) + m(2, 1);
    const Quaternion rows[4] = {{1 + m(0, 0) + m(1, 1) + m(2, 2), wx, wy, wz},
                                {wx, 1 + m(0, 0) - m(1, 1) - m(2, 2), xy, xz},
                                {wy, xy, 1 - m(0, 0) + m(1, 1) - m(2, 2), yz},
                                {wz, xz, yz, 1 - m(0, 0) - m(1, 1) + m(2, 2)}};
    return rows[k];
}

/// Of the four ways to it, the one that loses no digits: by its largest component.
Quaternion quaternionOf(const UMatrix4<float>& matrix) {
    std::size_t largest = 0;
    for (std::size_t k = 1; k < 4; ++k) {
        if (scaledBy(matrix, k)[k] > scaledBy(matrix, largest)[largest]) largest = k;
    }
    Quaternion q = scaledBy(matrix, largest);
    if (q[0] < 0.0) {
        for (double& component : q) component = -component;
    }
    return q;
}

}  // namespace

Turn turnIn(const UMatrix4<float>& matrix) {
    const Quaternion q = quaternionOf(matrix);
    const UVector3<double> axis(q[1], q[2], q[3]);
    const double angle = 2.0 * std::atan2(axis.GetLength(), q[0]);
    return {axis.GetNormal().As<float>(), static_cast<float>(angle)};
}

std::string textOf(const Turn& turn) {
    if (turn.axis.IsZeroLength() || turn.angleRad == 0.0f) return "leave the part as it is";
    return fmt::format("turn the part {:.2f}° about the axis {}", degreesOf(turn.angleRad),
                       textOf(turn.axis));
}

}  // namespace App

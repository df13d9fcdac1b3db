#include "pose/geometry/PoseTurn.h"

#include <cmath>
#include <numbers>

namespace Tesk::pose {

namespace {

using Vector = UVector3<double>;

/// Further from a whole number than this, an entry is no rounded 0 or 1.
constexpr double kRounding = 2e-6;

}  // namespace

PoseTurn PoseTurn::ontoUp(const Vector& up) {
    if (up.z < 0.0) {
        // By pi about Y first: straight down, there is no smallest turn.
        PoseTurn over;
        over.m_cells[0][0] = -1.0;
        over.m_cells[2][2] = -1.0;
        return over.then(ontoUp({-up.x, up.y, -up.z}));
    }
    // Rodrigues' formula about v = up × Z, whose length is the sine and up.z the cosine.
    const double vx = up.y;
    const double vy = -up.x;
    const double rest = 1.0 / (1.0 + up.z);
    PoseTurn turn;
    turn.m_cells[0][0] = 1.0 - vy * vy * rest;
    turn.m_cells[0][1] = vx * vy * rest;
    turn.m_cells[0][2] = -vy;
    turn.m_cells[1][0] = vx * vy * rest;
    turn.m_cells[1][1] = 1.0 - vx * vx * rest;
    turn.m_cells[1][2] = vx;
    turn.m_cells[2][0] = vy;
    turn.m_cells[2][1] = -vx;
    turn.m_cells[2][2] = up.z;
    return turn;
}

PoseTurn PoseTurn::aboutUp(double angleRad) {
    const double quarters = angleRad / (std::numbers::pi / 2.0);
    const double whole = std::floor(quarters + 0.5);
    double c = Tesk::cosine(angleRad);
    double s = Tesk::sine(angleRad);
    if (quarters == whole) {
        c = std::floor(c + 0.5);
        s = std::floor(s + 0.5);
    }
    PoseTurn turn;
    turn.m_cells[0][0] = c;
    turn.m_cells[0][1] = s;
    turn.m_cells[1][0] = -s;
    turn.m_cells[1][1] = c;
    return turn;
}

PoseTurn PoseTurn::then(const PoseTurn& next) const {
    PoseTurn product;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            double sum = 0.0;
            for (int k = 0; k < 3; ++k) sum += m_cells[row][k] * next.m_cells[k][col];
            product.m_cells[row][col] = sum;
        }
    }
    return product;
}

Vector PoseTurn::turned(const Vector& direction) const {
    Vector result;
    for (int col = 0; col < 3; ++col) {
        result[col] = direction.x * m_cells[0][col] + direction.y * m_cells[1][col] +
                      direction.z * m_cells[2][col];
    }
    return result;
}

Vector PoseTurn::turnedBack(const Vector& direction) const {
    Vector result;
    for (int row = 0; row < 3; ++row) {
        result[row] = m_cells[row][0] * direction.x + m_cells[row][1] * direction.y +
                      m_cells[row][2] * direction.z;
    }
    return result;
}

UMatrix4<float> PoseTurn::matrix() const {
    UMatrix4<float> rounded;
    bool isAlongAxes = true;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            const double whole = std::floor(m_cells[row][col] + 0.5);
            if (!(std::fabs(m_cells[row][col] - whole) < kRounding)) isAlongAxes = false;
            rounded.at(row, col) = static_cast<float>(m_cells[row][col]);
        }
    }
    if (!isAlongAxes) return rounded;
    for (int row = 0; row < 3; ++row) {
        for (int col = 0; col < 3; ++col) {
            // Adding zero leaves no negative one.
            rounded.at(row, col) = static_cast<float>(std::floor(m_cells[row][col] + 0.5) + 0.0);
        }
    }
    return rounded;
}

}  // namespace Tesk::pose

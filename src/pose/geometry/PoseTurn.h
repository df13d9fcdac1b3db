#pragma once

#include "TeskDataBasic/UMatrix4.h"
#include "TeskDataBasic/UVector3.h"

namespace Tesk::pose {

/// A rotation in double, for row vectors: a direction d becomes d · R, and a column of it is a
/// coordinate axis of the turned frame, seen in the frame before.
class PoseTurn {
 public:
    /// No turn.
    PoseTurn() = default;

    /// A turn that brings a unit vector to +Z: none for +Z itself, by pi about Y for −Z, and for
    /// directions above the horizon the smallest.
    static PoseTurn ontoUp(const UVector3<double>& up);

    /// The turn by an angle about +Z, right-handed; exact for multiples of 90°.
    static PoseTurn aboutUp(double angleRad);

    /// This turn, then another.
    PoseTurn then(const PoseTurn& next) const;

    UVector3<double> turned(const UVector3<double>& direction) const;

    /// The direction that becomes this one.
    UVector3<double> turnedBack(const UVector3<double>& direction) const;

    /// The direction that the turn brings to +Z.
    UVector3<double> up() const { return {m_cells[0][2], m_cells[1][2], m_cells[2][2]}; }

    /// The larger, the smaller the angle of the turn: 1 + 2 cos(angle).
    double trace() const { return m_cells[0][0] + m_cells[1][1] + m_cells[2][2]; }

    /// Rounded to float; exactly along the axes if it is so to within rounding.
    UMatrix4<float> matrix() const;

 private:
    double m_cells[3][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
};

/// The direction that a rotation brings to +Z, as its entries say.
inline UVector3<float> upOf(const UMatrix4<float>& rotation) {
    return {rotation.at(0, 2), rotation.at(1, 2), rotation.at(2, 2)};
}

}  // namespace Tesk::pose

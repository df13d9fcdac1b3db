#pragma once

#include "TeskDataBasic/UPoint3.h"
#include "TeskDataBasic/UVector3.h"

namespace Tesk::minbox {

/// The plane across an axis, onto which points are projected.
class AxisPlane {
 public:
    explicit AxisPlane(const UVector3<float>& axis);

    /// False if the plane's frame has collapsed: for axes along Z other than (0, 0, 1), and those
    /// without a direction.
    bool isSound() const { return m_isSound; }

    /// Whether the plane's coordinates turn counter-clockwise about the axis.
    bool isRightHanded() const { return m_kind == Kind::kX || m_kind == Kind::kZ; }

    double u(const UPoint3<float>& p) const;
    double v(const UPoint3<float>& p) const;

 private:
    /// Along coordinate axes, projecting keeps two of a point's coordinates.
    enum class Kind { kX, kY, kZ, kGeneral };

    UPoint3<float> dropped(const UPoint3<float>& p) const;

    Kind m_kind;
    bool m_isSound;
    UVector3<float> m_normal;
    UVector3<float> m_e1;
    UVector3<float> m_e2;
};

}  // namespace Tesk::minbox

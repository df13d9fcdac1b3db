#include "minbox/axes/AxisPlane.h"

namespace Tesk::minbox {

AxisPlane::AxisPlane(const UVector3<float>& axis) : m_normal(axis.GetNormal()) {
    m_kind = axis == UVector3<float>(1, 0, 0)   ? Kind::kX
             : axis == UVector3<float>(0, 1, 0) ? Kind::kY
             : axis == UVector3<float>(0, 0, 1) ? Kind::kZ
                                                : Kind::kGeneral;
    m_e1 = (m_normal * UVector3<float>(0, 0, 1)).GetNormal();
    if (m_e1.IsZeroLength()) m_e1 = (m_normal * m_normal) * UVector3<float>(1, 0, 0);
    m_e2 = m_e1 * m_normal;
    const float length = m_e1.GetLength();
    m_isSound = m_kind != Kind::kGeneral || length > 0.5f;
}

UPoint3<float> AxisPlane::dropped(const UPoint3<float>& p) const {
    return p - m_normal * p.Dot(m_normal);
}

double AxisPlane::u(const UPoint3<float>& p) const {
    const float value = m_kind == Kind::kX         ? p.y
                        : m_kind == Kind::kGeneral ? dropped(p).Dot(m_e1)
                                                   : p.x;
    return static_cast<double>(value);
}

double AxisPlane::v(const UPoint3<float>& p) const {
    const float value = m_kind == Kind::kZ         ? p.y
                        : m_kind == Kind::kGeneral ? dropped(p).Dot(m_e2)
                                                   : p.z;
    return static_cast<double>(value);
}

}  // namespace Tesk::minbox

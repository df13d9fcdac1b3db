#include "minbox/axes/AxisSearch.h"

#include <algorithm>
#include <cmath>

#include "TeskSDKCommonTools/ConvexHull2.h"
#include "minbox/basearea/BaseAreaScores.h"
#include "minbox/fit/BoxFit.h"
#include "minbox/frame/SearchCall.h"

namespace Tesk::minbox {
namespace {

/// The corners of the hull's shadow, counter-clockwise about the axis.
Outline shadowOf(const gte::ConvexHull3& hull, const AxisPlane& plane) {
    const std::vector<UPoint3<float>>& vertices = hull.getVertices();
    std::vector<double> coordinates;
    coordinates.reserve(vertices.size() * 2);
    for (const UPoint3<float>& p : vertices) {
        coordinates.push_back(plane.u(p));
        coordinates.push_back(plane.v(p));
    }
    Outline corners = gte::ConvexHull2(coordinates, static_cast<int>(vertices.size())).getIndices();
    if (!plane.isRightHanded()) std::reverse(corners.begin(), corners.end());
    return corners;
}

/// The vector from one vertex to another in the plane across the axis, scaled.
Vector across(const HullPoints& points, const Vector& axis, int from, int to) {
    const Vector edge = points[to] - points[from];
    return axis * (edge * axis);
}

/// The longest such vector from a shadow's corner to another, which `corner` becomes.
Vector longestFrom(const HullPoints& points, const Vector& axis, const Outline& shadow,
                   int& corner) {
    const int from = corner;
    Vector longest;
    for (const int to : shadow) {
        const Vector edge = across(points, axis, from, to);
        if ((edge | edge) > (longest | longest)) {
            longest = edge;
            corner = to;
        }
    }
    return longest;
}

/// The box of points whose shadow has no area: along the shadow, or at any angle if it is a point.
BoxFrame thinBox(const HullPoints& points, const Vector& axis, const Outline& shadow) {
    Vector along;
    if (!shadow.empty()) {
        int end = shadow[0];
        longestFrom(points, axis, shadow, end);
        along = longestFrom(points, axis, shadow, end);
    }
    if ((along | along) == points.constants().zero) along = anyOrthogonal(axis);
    return frameAlong(points, {along, axis * along, axis});
}

}  // namespace

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

OrientedBox3 searchAroundAxis(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points,
                              const UVector3<float>& axis) {
    SearchCall call(impl, n, points, Operation::kAroundAxis);
    const HullPoints& vertices = call.hull().points();
    const AxisPlane plane(axis);
    if (vertices.count() == 0 || !plane.isSound()) return noBox();
    if (vertices.count() == 1) return call.lowDimensionBoxOrNone();
    const Vector direction = axis.As<double>();
    Outline shadow = shadowOf(call.hull().hull(), plane);
    // Rounding can move corners of the shadow apart that lie exactly above each other.
    removeSteep(vertices, direction, shadow);
    if (shadow.size() < 3) return call.boxOf(thinBox(vertices, direction, shadow));
    Calipers calipers(vertices);
    calipers.set(direction, shadow);
    BoxCandidate box = lowestBox(calipers, [&](const Vector& origin, const Vector& along) {
        return vertices.rangeAlong(origin, along);
    });
    const FrameState state = checkFrame(vertices, box);
    if (state == FrameState::kRemeasured) {
        measureAgain(vertices.constants(), BaseAreaKey::kHeight, box);
    }
    const bool isBox = state != FrameState::kDropped && !std::isnan(box.volume);
    return call.boxOf(isBox ? box : thinBox(vertices, direction, shadow));
}

}  // namespace Tesk::minbox

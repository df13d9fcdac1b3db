#include "minbox/axes/AxisSearch.h"

#include <algorithm>
#include <cmath>

#include "TeskSDKCommonTools/ConvexHull2.h"
#include "minbox/basearea/BaseAreaScores.h"
#include "minbox/fit/LowDimensionBox.h"
#include "minbox/hull/SearchHull.h"
#include "minbox/outline/Calipers.h"

namespace {

/// The corners of the hull's shadow, counter-clockwise about the axis.
Outline shadowOf(const MinBoundingBoxImpl& impl, const AxisPlane& plane) {
    std::vector<double> coordinates;
    coordinates.reserve(impl.hullVertices->size() * 2);
    for (const UPoint3<float>& p : *impl.hullVertices) {
        coordinates.push_back(plane.u(p));
        coordinates.push_back(plane.v(p));
    }
    Outline corners =
        gte::ConvexHull2(coordinates, static_cast<int>(impl.hullVertices->size())).getIndices();
    if (!plane.isRightHanded()) std::reverse(corners.begin(), corners.end());
    return corners;
}

/// A vector from one vertex to another, as the axis sees it.
Vector across(const MinBoundingBoxImpl& impl, const Vector& axis, int from, int to) {
    const Vector edge = hullPoint(impl, to) - hullPoint(impl, from);
    return axis * (edge * axis);
}

/// The longest of the vectors from a shadow's corner to the others.
Vector longestFrom(const MinBoundingBoxImpl& impl, const Vector& axis, const Outline& shadow,
                   int& corner) {
    const int from = corner;
    Vector longest;
    for (const int to : shadow) {
        const Vector edge = across(impl, axis, from, to);
        if ((edge | edge) > (longest | longest)) {
            longest = edge;
            corner = to;
        }
    }
    return longest;
}

/// The box of points whose shadow has no area: along the shadow, or any way round for a point.
OrientedBox3 thinBox(MinBoundingBoxImpl& impl, const Vector& axis, const Outline& shadow) {
    Vector along;
    if (!shadow.empty()) {
        int end = shadow[0];
        longestFrom(impl, axis, shadow, end);
        along = longestFrom(impl, axis, shadow, end);
    }
    if ((along | along) == impl.zero) along = anyOrthogonal(axis);
    return boxAlong(impl, {along, axis * along, axis});
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
    impl.caliperFlag = true;
    impl.pointCount = n;
    impl.baseAreaMode = false;
    impl.heightMode = false;
    const SearchHull hull(impl, n, points);
    const AxisPlane plane(axis);
    if (hullVertexCount(impl) == 0 || !plane.isSound()) return noBox();
    if (hullVertexCount(impl) == 1) return lowDimensionBox(impl);
    const Vector direction = axis.As<double>();
    Outline shadow = shadowOf(impl, plane);
    // Rounding can tell corners apart in the shadow that lie straight above each other.
    removeSteep(impl, direction, shadow);
    if (shadow.size() < 3) return thinBox(impl, direction, shadow);
    Calipers calipers(impl);
    calipers.set(direction, shadow);
    BoxCandidate box = lowestBox(
        impl, direction, calipers,
        [&](const Vector& origin, const Vector& along) { return rangeAlong(impl, origin, along); });
    const FrameState state = secure(impl, box);
    if (state == FrameState::kRetaken) measureAgain(impl, box);
    const bool isBox = state != FrameState::kDropped && !std::isnan(box.volume);
    return isBox ? toOrientedBox(impl, box) : thinBox(impl, direction, shadow);
}

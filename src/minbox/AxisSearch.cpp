#include "AxisSearch.h"

#include <algorithm>
#include <cmath>

#include "BaseAreaScores.h"
#include "Calipers.h"
#include "LeastRectangle.h"
#include "LowDimensionBox.h"
#include "SearchHull.h"
#include "TeskSDKCommonTools/ConvexHull2.h"

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

/// The box over the rectangle that the kernel finds around the shadow in single precision; unset
/// where rounding spoils it. Where the axis runs along edges of the hull, their two ends part in
/// the shadow, and calipers that meet such a short edge may lose their way.
BoxCandidate boxOfFloats(const MinBoundingBoxImpl& impl, const AxisPlane& plane,
                         const Vector& axis) {
    const Outline shadow = shadowOf(impl, plane);
    if (shadow.size() < 3) return {};
    Calipers calipers(impl);
    calipers.set(axis, shadow);
    BoxCandidate box = lowestBox(
        impl, axis, calipers,
        [&](const Vector& origin, const Vector& along) { return rangeAlong(impl, origin, along); });
    // Where the shadow is next to nothing, its corners may turn the wrong way round: the sides then
    // lie inside out, by less than the check for vertices outside sees.
    const bool isSound = secure(impl, box) == FrameState::kSound &&
                         box.ranges[0].length() >= impl.zero &&
                         box.ranges[1].length() >= impl.zero && !std::isnan(box.volume);
    return isSound ? box : BoxCandidate();
}

/// The box over the least rectangle around the shadow in double precision, where ends of edges
/// along the axis coincide but for a known tolerance. Its ranges are those of all hull vertices.
BoxFrame boxOfDoubles(const MinBoundingBoxImpl& impl, const Vector& axis) {
    constexpr double kTolerance = 1e-9;  // of the shadow's extent
    const Vector unit = axis.GetNormal();
    const Vector e1 = anyOrthogonal(unit).GetNormal();
    const Vector e2 = unit * e1;
    std::vector<double> coordinates;
    coordinates.reserve(impl.computePoints->size());
    for (int i = 0; i < hullVertexCount(impl); ++i) {
        const Vector p = hullPoint(impl, i) - hullPoint(impl, 0);
        coordinates.insert(coordinates.end(), {p | e1, p | e2});
    }
    const gte::ConvexHull2 hull(coordinates, hullVertexCount(impl));
    PlanePolygon shadow;
    for (const int i : hull.getIndices()) {
        const auto at = 2 * static_cast<std::size_t>(i);
        shadow.emplace_back(coordinates[at], coordinates[at + 1]);
    }
    shadow = withoutNearCorners(shadow, kTolerance * extentOf(shadow));
    if (shadow.size() < 2) return frameAlong(impl, {e1, e2, axis});
    const std::size_t edge = leastRectangleEdge(shadow);
    const UVector2<double> side = shadow[edge + 1 == shadow.size() ? 0 : edge + 1] - shadow[edge];
    const Vector along = (e1 * side.x + e2 * side.y).GetNormal();
    return frameAlong(impl, {along, unit * along, axis});
}

double crossSectionOf(const BoxFrame& box) {
    return box.ranges[0].length() * box.ranges[1].length() /
           std::sqrt(box.squaredLengths[0] * box.squaredLengths[1]);
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
    // Of the cross-section: what the two ways may differ by.
    constexpr double kRounding = 1e-6;
    impl.caliperFlag = true;
    impl.pointCount = n;
    impl.baseAreaMode = false;
    impl.heightMode = false;
    const SearchHull hull(impl, n, points);
    const AxisPlane plane(axis);
    if (hullVertexCount(impl) == 0 || !plane.isSound()) return noBox();
    if (hullVertexCount(impl) == 1) return lowDimensionBox(impl);
    const Vector direction = axis.As<double>();
    const BoxCandidate single = boxOfFloats(impl, plane, direction);
    const BoxFrame least = boxOfDoubles(impl, direction);
    const double limit = crossSectionOf(least) * direction.GetLength() * (1.0 + kRounding);
    if (single.volume != impl.unset && single.area <= limit) return toOrientedBox(impl, single);
    return toOrientedBox(impl, least);
}

#include "minbox/axes/AxisSearch.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "TeskSDKCommonTools/ConvexHull2.h"
#include "minbox/axes/AxisPlane.h"
#include "minbox/axes/LeastRectangle.h"
#include "minbox/basearea/BaseAreaScores.h"
#include "minbox/call/SearchCall.h"
#include "minbox/fit/BoxCheck.h"
#include "minbox/fit/BoxFit.h"

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

/// The box over the rectangle that the calipers find around the shadow in single precision; none if
/// rounding spoils it. If the axis runs along edges of the hull, the two ends of each separate in
/// the shadow, and calipers that meet such a short edge may lose their way.
std::optional<BoxCandidate> boxOfFloats(const SearchHull& hull, const AxisPlane& plane,
                                        const Vector& axis) {
    const HullPoints& vertices = hull.points();
    const Outline shadow = shadowOf(hull.hull(), plane);
    if (shadow.size() < 3) return std::nullopt;
    Calipers calipers(vertices);
    calipers.set(axis, shadow);
    BoxCandidate box = lowestBox(calipers, [&](const Vector& origin, const Vector& along) {
        return vertices.rangeAlong(origin, along);
    });
    // The corners of a very thin shadow may turn the wrong way round. The sides are then inside
    // out by less than the check for vertices outside notices.
    const double zero = vertices.constants().zero;
    const bool isSound = checkFrame(vertices, box) == FrameState::kSound &&
                         box.ranges[0].length() >= zero && box.ranges[1].length() >= zero &&
                         !std::isnan(box.volume);
    return isSound ? std::optional(box) : std::nullopt;
}

/// The box over the least rectangle around the shadow in double precision, in which the ends of
/// edges along the axis coincide to within a known tolerance. Its ranges are those of all hull
/// vertices.
BoxFrame boxOfDoubles(const HullPoints& vertices, const Vector& axis) {
    constexpr double kTolerance = 1e-9;  // of the shadow's extent
    const Vector unit = axis.GetNormal();
    const Vector e1 = anyOrthogonal(unit).GetNormal();
    const Vector e2 = unit * e1;
    std::vector<double> coordinates;
    coordinates.reserve(2 * static_cast<std::size_t>(vertices.count()));
    for (int i = 0; i < vertices.count(); ++i) {
        const Vector p = vertices[i] - vertices[0];
        coordinates.insert(coordinates.end(), {p | e1, p | e2});
    }
    const gte::ConvexHull2 hull(coordinates, vertices.count());
    PlanePolygon shadow;
    for (const int i : hull.getIndices()) {
        const auto at = 2 * static_cast<std::size_t>(i);
        shadow.emplace_back(coordinates[at], coordinates[at + 1]);
    }
    shadow = withoutNearCorners(shadow, kTolerance * extentOf(shadow));
    if (shadow.size() < 2) return frameAlong(vertices, {e1, e2, axis});
    const std::size_t edge = leastRectangleEdge(shadow);
    const UVector2<double> side = shadow[edge + 1 == shadow.size() ? 0 : edge + 1] - shadow[edge];
    const Vector along = (e1 * side.x + e2 * side.y).GetNormal();
    return frameAlong(vertices, {along, unit * along, axis});
}

double crossSectionOf(const BoxFrame& box) {
    return box.ranges[0].length() * box.ranges[1].length() /
           std::sqrt(box.squaredLengths[0] * box.squaredLengths[1]);
}

}  // namespace

OrientedBox3 searchAroundAxis(MinBoundingBoxImpl& impl, int n, const UPoint3<float>* points,
                              const UVector3<float>& axis) {
    // How much larger the first cross-section may be, relative to the second.
    constexpr double kRounding = 1e-6;
    SearchCall call(impl, n, points, Operation::kAroundAxis);
    const HullPoints& vertices = call.hull().points();
    const AxisPlane plane(axis);
    if (vertices.count() == 0 || !plane.isSound()) return noBox();
    if (vertices.count() == 1) return call.lowDimensionBoxOrNone();
    const Vector direction = axis.As<double>();
    const std::optional<BoxCandidate> single = boxOfFloats(call.hull(), plane, direction);
    const BoxFrame least = boxOfDoubles(vertices, direction);
    const double limit = crossSectionOf(least) * direction.GetLength() * (1.0 + kRounding);
    if (single && single->area <= limit) return call.boxOf(*single);
    return call.boxOf(least);
}

}  // namespace Tesk::minbox

#include "pose/resting/FlatPoints.h"

#include <algorithm>
#include <limits>

#include "TeskSDKCommonTools/ConvexHull3.h"
#include "pose/geometry/OuterPoints.h"
#include "pose/geometry/PoseTurn.h"

namespace Tesk::pose {

namespace {

using Vector = UVector3<double>;

Vector wide(const UPoint3<float>& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}

/// The direction that the largest facet of a small hull looks up to from below; `up` if there is
/// none that looks down.
Vector upOnLargest(const std::vector<UPoint3<float>>& points, const Vector& up) {
    const gte::ConvexHull3 hull(points.data(), static_cast<int>(points.size()), 3);
    const auto corner = [&](int v) {
        return wide(hull.getVertices()[static_cast<std::size_t>(v)]);
    };
    Vector largest;
    for (const auto& [a, b, c] : hull.getTriangles()) {
        const Vector normal = (corner(b) - corner(a)) * (corner(c) - corner(a));
        const bool isSteep = -(normal | up) < 0.9 * normal.GetLength();
        if (!isSteep && normal.GetLength() > largest.GetLength()) largest = normal;
    }
    return largest.IsZeroLength() ? up : largest.GetNormal() * -1.0;
}

}  // namespace

void thinFlat(const Vector& up, double bottom, double rounding,
              std::vector<UPoint3<float>>& points) {
    constexpr std::size_t kFew = 256;
    constexpr std::size_t kMany = 16384;
    if (points.size() < kFew) return;
    const PoseTurn turn = PoseTurn::ontoUp(up);
    const auto fromBelow = [&](const UPoint3<float>& p) -> PlanePoint {
        const Vector seen = turn.turned(wide(p));
        return {seen.x, seen.y};
    };
    const auto isAbove = [&](const UPoint3<float>& p) {
        return (wide(p) | up) > bottom + rounding;
    };
    // Any few thousand of them span about the whole outline.
    std::vector<PlanePoint> some;
    const std::size_t stride = points.size() / kMany + 1;
    for (std::size_t i = 0; i < points.size(); i += stride) {
        if (!isAbove(points[i])) some.push_back(fromBelow(points[i]));
    }
    if (some.size() < 3) return;
    const InnerPolygon face(some.size(), [&](std::size_t i) { return some[i]; });
    std::erase_if(points, [&](const UPoint3<float>& p) { return face.holds(fromBelow(p)); });
    const auto flat = std::partition(points.begin(), points.end(), isAbove);
    const std::vector<UPoint3<float>> inPlane(flat, points.end());
    points.erase(flat, points.end());
    for (const std::size_t i : hullPlacesOf(
             inPlane.size(), [&](std::size_t place) { return fromBelow(inPlane[place]); })) {
        points.push_back(inPlane[i]);
    }
}

void thinTilted(const Vector& up, double rounding, std::vector<UPoint3<float>>& points) {
    constexpr std::size_t kMany = 1024;
    if (points.size() < kMany) return;
    // Any few hundred of them span about the whole face.
    const std::size_t stride = points.size() / (kMany / 2);
    std::vector<UPoint3<float>> some;
    for (std::size_t i = 0; i < points.size(); i += stride) some.push_back(points[i]);
    const Vector tilted = upOnLargest(some, up);
    double bottom = std::numeric_limits<double>::infinity();
    for (const UPoint3<float>& p : points) bottom = std::min(bottom, wide(p) | tilted);
    thinFlat(tilted, bottom, rounding, points);
}

}  // namespace Tesk::pose

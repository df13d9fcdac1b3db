#include "pose/geometry/OuterPoints.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"
#include "TeskSDKCommonTools/ConvexHull2.h"

namespace Tesk::pose {

namespace {

/// Fewer points than this are quicker sorted than looked at.
constexpr std::size_t kFew = 256;

/// More points than this need not be looked at for the polygon.
constexpr std::size_t kMany = 8192;

constexpr std::size_t kDirections = 32;

std::array<PlanePoint, kDirections> directions() {
    std::array<PlanePoint, kDirections> list{};
    for (std::size_t k = 0; k < kDirections; ++k) {
        const double angle = 2.0 * std::numbers::pi * static_cast<double>(k) / kDirections;
        list[k] = {Tesk::cosine(angle), Tesk::sine(angle)};
    }
    return list;
}

bool isFinite(const PlanePoint& p) {
    return std::isfinite(p[0]) && std::isfinite(p[1]);
}

/// The farthest point in each direction, in the order of the directions: a convex polygon. Of many
/// points, looks at some: any polygon of points of the set will do.
std::vector<PlanePoint> farthest(std::size_t count, const PointAt& pointAt) {
    std::array<PlanePoint, kDirections> best{};
    std::array<double, kDirections> reach{};
    reach.fill(-std::numeric_limits<double>::infinity());
    const auto along = directions();
    const std::size_t stride = count / kMany + 1;
    for (std::size_t i = 0; i < count; i += stride) {
        const PlanePoint p = pointAt(i);
        if (!isFinite(p)) continue;
        for (std::size_t k = 0; k < kDirections; ++k) {
            const double value = p[0] * along[k][0] + p[1] * along[k][1];
            if (!(value > reach[k])) continue;
            best[k] = p;
            reach[k] = value;
        }
    }
    std::vector<PlanePoint> polygon;
    for (std::size_t k = 0; k < kDirections; ++k) {
        const bool isNew = polygon.empty() || polygon.back() != best[k];
        if (std::isfinite(reach[k]) && isNew) polygon.push_back(best[k]);
    }
    return polygon;
}

}  // namespace

InnerPolygon::InnerPolygon(std::size_t count, const PointAt& pointAt) {
    const std::vector<PlanePoint> polygon = farthest(count, pointAt);
    setSides(polygon);
    for (const PlanePoint& p : polygon) {
        m_middle[0] += p[0] / static_cast<double>(polygon.size());
        m_middle[1] += p[1] / static_cast<double>(polygon.size());
    }
    double radius = std::numeric_limits<double>::max();
    for (const Side& side : m_sides) radius = std::min(radius, depthOf(side, m_middle));
    m_radiusSq = radius > 0.0 ? radius * radius * 0.999 : 0.0;
}

bool InnerPolygon::holds(const PlanePoint& p) const {
    if (m_sides.size() < 3) return false;
    const double dx = p[0] - m_middle[0];
    const double dy = p[1] - m_middle[1];
    if (dx * dx + dy * dy < m_radiusSq) return true;
    return std::all_of(m_sides.begin(), m_sides.end(),
                       [&](const Side& side) { return depthOf(side, p) > 0.0; });
}

void InnerPolygon::setSides(const std::vector<PlanePoint>& polygon) {
    double size = 0.0;
    for (const PlanePoint& p : polygon) size = std::max({size, std::fabs(p[0]), std::fabs(p[1])});
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const PlanePoint& a = polygon[i];
        const PlanePoint& b = polygon[(i + 1) % polygon.size()];
        const double dx = b[0] - a[0];
        const double dy = b[1] - a[1];
        const double length = std::sqrt(dx * dx + dy * dy);
        if (length == 0.0) continue;
        const double nx = -dy / length;
        const double ny = dx / length;
        m_sides.push_back({nx, ny, nx * a[0] + ny * a[1] + size * 1e-12});
    }
}

double InnerPolygon::depthOf(const Side& side, const PlanePoint& p) {
    return side.normalX * p[0] + side.normalY * p[1] - side.offset;
}

std::vector<std::size_t> hullPlacesOf(std::size_t count, const PointAt& pointAt) {
    const InnerPolygon inside(count > kFew ? count : 0, pointAt);
    std::vector<std::size_t> outer;
    std::vector<double> coordinates;
    for (std::size_t i = 0; i < count; ++i) {
        const PlanePoint p = pointAt(i);
        if (!isFinite(p) || inside.holds(p)) continue;
        outer.push_back(i);
        coordinates.insert(coordinates.end(), p.begin(), p.end());
    }
    const gte::ConvexHull2 hull(coordinates, static_cast<int>(outer.size()));
    std::vector<std::size_t> places;
    for (const int i : hull.getIndices()) places.push_back(outer[static_cast<std::size_t>(i)]);
    return places;
}

std::vector<PlanePoint> hullOf(std::size_t count, const PointAt& pointAt) {
    std::vector<PlanePoint> corners;
    for (const std::size_t i : hullPlacesOf(count, pointAt)) corners.push_back(pointAt(i));
    return corners;
}

}  // namespace Tesk::pose

#include "pose/resting/Standing.h"

#include <cmath>
#include <limits>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"
#include "pose/geometry/OuterPoints.h"

namespace Tesk::pose {

namespace {

double turned(const UVector3<double>& p, const orient::TurnedCoordinate& c) {
    return p.x * static_cast<double>(c.fromX) + p.y * static_cast<double>(c.fromY) +
           p.z * static_cast<double>(c.fromZ) + static_cast<double>(c.shift);
}

/// The facets' corners seen from above, each vertex once.
std::vector<PlanePoint> footprintOf(const PoseMesh& mesh, const orient::TurnedPart& part,
                                    const std::vector<std::int32_t>& facets) {
    std::vector<bool> isTaken(mesh.flat.x.size());
    std::vector<PlanePoint> points;
    for (const std::int32_t facet : facets) {
        for (const std::int32_t v : mesh.flat.corners[static_cast<std::size_t>(facet)]) {
            if (isTaken[static_cast<std::size_t>(v)]) continue;
            isTaken[static_cast<std::size_t>(v)] = true;
            const UPoint3<float> p = part.point(mesh.flat, v);
            points.push_back({static_cast<double>(p.x), static_cast<double>(p.y)});
        }
    }
    return points;
}

/// How far a point lies inside the nearest side of a counter-clockwise polygon; negative outside.
double insideBy(const std::vector<PlanePoint>& polygon, const PlanePoint& p) {
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const PlanePoint& a = polygon[i];
        const PlanePoint& b = polygon[(i + 1) % polygon.size()];
        const double dx = b[0] - a[0];
        const double dy = b[1] - a[1];
        const double distance =
            (dx * (p[1] - a[1]) - dy * (p[0] - a[0])) / std::sqrt(dx * dx + dy * dy);
        least = distance < least ? distance : least;
    }
    return least;
}

}  // namespace

float tiltMarginOf(const PoseMesh& mesh, const orient::TurnedPart& part, const Contact& contact) {
    constexpr float kNone = -90.0f;
    const std::vector<PlanePoint> footprint = footprintOf(mesh, part, contact.facets);
    const std::vector<PlanePoint> hull =
        hullOf(footprint.size(), [&](std::size_t i) { return footprint[i]; });
    if (hull.size() < 3) return kNone;
    const PlanePoint foot = {turned(mesh.centroid, part.coordinates[0]),
                             turned(mesh.centroid, part.coordinates[1])};
    const double height = turned(mesh.centroid, part.coordinates[2]);
    const double inside = insideBy(hull, foot);
    if (!std::isfinite(inside) || !std::isfinite(height)) return kNone;
    const double angleDeg = Tesk::angleOf(std::fabs(inside), height) * (180.0 / std::numbers::pi);
    return static_cast<float>(inside < 0.0 ? -angleDeg : angleDeg);
}

bool isContactEnough(double contactArea, double volume) {
    constexpr double kShare = 0.03;
    // contactArea >= share · volume^(2/3), by cubes.
    return contactArea * contactArea * contactArea >= kShare * kShare * kShare * volume * volume;
}

bool isStanding(bool liesFlat, float tiltMarginDeg, float contactArea, double volume) {
    constexpr float kLeastTiltDeg = 5.0f;
    return liesFlat && tiltMarginDeg >= kLeastTiltDeg &&
           isContactEnough(static_cast<double>(contactArea), volume);
}

}  // namespace Tesk::pose

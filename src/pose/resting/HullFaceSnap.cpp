#include "pose/resting/HullFaceSnap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <vector>

#include "TeskDataBasic/Transcendental.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

namespace Tesk::pose {

namespace {

using Vector = UVector3<double>;

double cosineOfDegrees(double angleDeg) {
    return Tesk::cosine(angleDeg * std::numbers::pi / 180.0);
}

Vector wide(const UPoint3<float>& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}

/// A facet of the hull: its normal, twice its area long.
struct Facet {
    Vector normal;
    double length = 0.0;
    bool isGrouped = false;
};

std::vector<Facet> facetsNear(const gte::ConvexHull3& hull, const Vector& up, double withinDeg) {
    const double cosine = cosineOfDegrees(withinDeg);
    const auto& vertices = hull.getVertices();
    const auto corner = [&](int v) { return wide(vertices[static_cast<std::size_t>(v)]); };
    std::vector<Facet> facets;
    for (const auto& [a, b, c] : hull.getTriangles()) {
        const Vector normal = (corner(b) - corner(a)) * (corner(c) - corner(a));
        const double length = normal.GetLength();
        if (length > 0.0 && -(normal | up) >= cosine * length) facets.push_back({normal, length});
    }
    // Seeds of faces are the largest facets.
    std::stable_sort(facets.begin(), facets.end(),
                     [](const Facet& a, const Facet& b) { return a.length > b.length; });
    return facets;
}

/// The facets within kFlatDeg of the seed, which become its face. On a convex surface they lie next
/// to its plane: by how much at most, nearPlate() tells.
Vector faceAround(std::vector<Facet>& facets, std::size_t seed) {
    const double cosine = cosineOfDegrees(kFlatDeg);
    Vector sum;
    const Facet of = facets[seed];
    for (std::size_t i = seed; i < facets.size(); ++i) {
        Facet& facet = facets[i];
        if (facet.isGrouped || (facet.normal | of.normal) < cosine * facet.length * of.length) {
            continue;
        }
        facet.isGrouped = true;
        sum += facet.normal;
    }
    return sum;
}

/// If hundreds of small facets surround the plate, the largest face is among the first seeds.
constexpr int kMostSeeds = 64;

/// The largest face among facets.
std::optional<RestingFace> largestFace(std::vector<Facet> facets) {
    RestingFace best;
    int seeds = 0;
    for (std::size_t i = 0; i < facets.size() && seeds < kMostSeeds; ++i) {
        if (facets[i].isGrouped) continue;
        ++seeds;
        const Vector face = faceAround(facets, i);
        const double area = face.GetLength() * 0.5;
        if (area > best.area) best = {face.GetNormal() * -1.0, area};
    }
    if (best.area == 0.0) return std::nullopt;
    return best;
}

}  // namespace

std::optional<RestingFace> largestFaceNear(const NearPlate& near, const Vector& up,
                                           double withinDeg) {
    const gte::ConvexHull3 hull(near.points.data(), static_cast<int>(near.points.size()), 3);
    return largestFace(facetsNear(hull, up, withinDeg));
}

std::optional<RestingFace> restingFaceNear(const PoseMesh& mesh, const Vector& up,
                                           double withinDeg) {
    NearPlate near = nearPlate(mesh, up, withinDeg, /*roomWanted=*/0.0);
    thin(up, near);
    return largestFaceNear(near, up, withinDeg);
}

}  // namespace Tesk::pose

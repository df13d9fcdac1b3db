#include "pose/resting/StableFaces.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"
#include "TeskSDKCommonTools/ConvexHull3.h"
#include "TeskThreads/Team.h"
#include "pose/mesh/FarthestVertex.h"

namespace Tesk::pose {

namespace {

using Vector = UVector3<double>;

/// Directions spread evenly over the sphere, along a spiral by the golden angle.
constexpr int kDirections = 512;

/// Facets that look within this of one another are one face, degrees: less than setting down tilts.
constexpr double kAlikeDeg = 1.0;

Vector directionAt(int k) {
    const double goldenAngle = std::numbers::pi * (3.0 - std::sqrt(5.0));
    const double z = 1.0 - (2.0 * k + 1.0) / kDirections;
    const double radius = std::sqrt(1.0 - z * z);
    return {radius * Tesk::cosine(goldenAngle * k), radius * Tesk::sine(goldenAngle * k), z};
}

/// Directions next to one another, whose farthest vertices are, too: one is the guess for the next.
/// Threads share the runs; a run does not depend on how.
constexpr int kRun = 32;
static_assert(kDirections % kRun == 0);

/// Fewer vertices than this are not worth a thread of their own.
constexpr std::int64_t kVerticesPerThread = 50'000;

std::vector<UPoint3<float>> farthestVertices(const PoseMesh& mesh) {
    std::array<std::int32_t, kDirections> farthest{};
    const auto findRun = [&](int first) {
        std::int32_t vertex = -1;
        for (int k = first; k < first + kRun; ++k) {
            vertex = farthestAlong(mesh, directionAt(k).As<float>(), vertex);
            farthest[static_cast<std::size_t>(k)] = vertex;
        }
    };
    const auto vertices = static_cast<std::int64_t>(mesh.flat.keptVertices);
    Tesk::withTeam(Tesk::threadsFor(vertices, kVerticesPerThread), [&](Tesk::Team& team) {
        team.forPieces(kDirections, kRun, [&](std::int64_t first, std::int64_t, int) {
            findRun(static_cast<int>(first));
        });
    });
    std::vector<UPoint3<float>> points;
    for (const std::int32_t vertex : farthest) {
        if (vertex >= 0) points.push_back(mesh.placed(vertex));
    }
    return points;
}

/// A facet of the hull; its normal is twice its area long.
struct HullFacet {
    std::array<Vector, 3> corners;
    Vector normal;
    Vector unitNormal;
    double length;  ///< of the normal

    /// Whether a point stands above or below it, or next to it by a fifth of its size.
    bool isUnder(const Vector& p) const {
        constexpr double kBeside = -0.2;
        for (std::size_t k = 0; k < 3; ++k) {
            const Vector side = corners[(k + 1) % 3] - corners[k];
            const double share = ((side * (p - corners[k])) | normal) / (normal | normal);
            if (!(share >= kBeside)) return false;
        }
        return true;
    }
};

/// The largest first.
std::vector<HullFacet> facetsOf(const gte::ConvexHull3& hull) {
    const auto corner = [&](int v) {
        const UPoint3<float>& p = hull.getVertices()[static_cast<std::size_t>(v)];
        return UVector3<float>(p.x, p.y, p.z).As<double>();
    };
    std::vector<HullFacet> facets;
    for (const auto& [a, b, c] : hull.getTriangles()) {
        const std::array<Vector, 3> corners = {corner(a), corner(b), corner(c)};
        const Vector normal = (corners[1] - corners[0]) * (corners[2] - corners[0]);
        facets.push_back({corners, normal, normal.GetNormal(), normal.GetLength()});
    }
    std::stable_sort(facets.begin(), facets.end(),
                     [](const HullFacet& a, const HullFacet& b) { return a.length > b.length; });
    return facets;
}

/// Facets that look about the same way: their summed normal, and whether one of them is under the
/// centroid.
struct Face {
    Vector normal;
    bool isUnderCentroid = false;
};

std::vector<Face> facesOf(const std::vector<HullFacet>& facets, const Vector& centroid) {
    const double cosine = Tesk::cosine(kAlikeDeg * std::numbers::pi / 180.0);
    std::vector<Face> faces;
    std::vector<bool> isGrouped(facets.size());
    for (std::size_t seed = 0; seed < facets.size(); ++seed) {
        if (isGrouped[seed]) continue;
        Face face;
        for (std::size_t i = seed; i < facets.size(); ++i) {
            if (isGrouped[i] || (facets[i].unitNormal | facets[seed].unitNormal) < cosine) continue;
            isGrouped[i] = true;
            face.normal += facets[i].normal;
            face.isUnderCentroid = face.isUnderCentroid || facets[i].isUnder(centroid);
        }
        faces.push_back(face);
    }
    return faces;
}

Vector placedCentroid(const PoseMesh& mesh) {
    const UMatrix4<float>& m = mesh.flat.placement;
    Vector placed;
    for (int axis = 0; axis < 3; ++axis) {
        placed[axis] = static_cast<double>(m.at(3, axis));
        for (int i = 0; i < 3; ++i) {
            placed[axis] += mesh.centroid[i] * static_cast<double>(m.at(i, axis));
        }
    }
    return placed;
}

}  // namespace

std::vector<UVector3<float>> upOnStableFaces(const PoseMesh& mesh, std::size_t most) {
    const std::vector<UPoint3<float>> points = farthestVertices(mesh);
    const gte::ConvexHull3 hull(points.data(), static_cast<int>(points.size()), 3);
    std::vector<Face> faces = facesOf(facetsOf(hull), placedCentroid(mesh));
    std::erase_if(faces, [](const Face& face) { return !face.isUnderCentroid; });
    std::stable_sort(faces.begin(), faces.end(), [](const Face& a, const Face& b) {
        return a.normal.GetLength() > b.normal.GetLength();
    });
    if (faces.size() > most) faces.resize(most);
    std::vector<UVector3<float>> ups;
    for (const Face& face : faces) ups.push_back((face.normal.GetNormal() * -1.0).As<float>());
    return ups;
}

}  // namespace Tesk::pose

#include "pose/facets/FacetMeasures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <utility>

#include "orient/sampling/Overhang.h"

namespace Tesk::pose {

namespace {

/// Sets of vertices that grow together.
class Patches {
 public:
    explicit Patches(std::size_t count) : m_parents(count) {
        std::iota(m_parents.begin(), m_parents.end(), 0);
    }

    std::int32_t rootOf(std::int32_t v) {
        while (parentOf(v) != v) {
            parentOf(v) = parentOf(parentOf(v));
            v = parentOf(v);
        }
        return v;
    }

    /// Whether they were apart.
    bool join(std::int32_t a, std::int32_t b) {
        const std::int32_t rootA = rootOf(a);
        const std::int32_t rootB = rootOf(b);
        parentOf(std::max(rootA, rootB)) = std::min(rootA, rootB);
        return rootA != rootB;
    }

 private:
    std::int32_t& parentOf(std::int32_t v) { return m_parents[static_cast<std::size_t>(v)]; }

    std::vector<std::int32_t> m_parents;
};

bool comesBefore(const UPoint3<float>& a, const UPoint3<float>& b) {
    if (a.x != b.x) return a.x < b.x;
    return a.y != b.y ? a.y < b.y : a.z < b.z;
}

/// Joins vertices at the same place: in meshes that share none, every facet is a patch before.
std::int32_t joinsByPlace(const orient::FlatMesh& mesh, std::vector<std::int32_t> order,
                          Patches& patches) {
    std::sort(order.begin(), order.end(), [&](std::int32_t a, std::int32_t b) {
        return comesBefore(mesh.point(a), mesh.point(b));
    });
    std::int32_t joins = 0;
    for (std::size_t i = 1; i < order.size(); ++i) {
        if (mesh.point(order[i - 1]) != mesh.point(order[i])) continue;
        if (patches.join(order[i - 1], order[i])) ++joins;
    }
    return joins;
}

/// More than a coordinate's shift is rounded by.
constexpr float kRounding = 1e-5f;

/// The upward part of a facet's unit normal.
float normalUp(const PoseMesh& mesh, std::size_t i, const UVector3<float>& up) {
    return mesh.normalX[i] * up.x + mesh.normalY[i] * up.y + mesh.normalZ[i] * up.z;
}

/// Of a block, the facets that overhang and lie above the gap, in mesh order.
template <class Take>
void forOverhanging(const PoseMesh& mesh, const orient::TurnedPart& part, const UVector3<float>& up,
                    float overhangCosine, std::size_t block, bool isAbove, Take take) {
    const auto height = [&](std::int32_t v) { return part.point(mesh.flat, v).z; };
    std::array<float, kBlockSize> normals;
    std::array<std::size_t, kBlockSize> found;
    const std::size_t first = block * kBlockSize;
    const std::size_t length = std::min(kBlockSize, mesh.areas.size() - first);
    for (std::size_t k = 0; k < length; ++k) normals[k] = normalUp(mesh, first + k, up);
    // Whether a facet overhangs is unpredictable: no branch depends on it.
    std::size_t overhanging = 0;
    for (std::size_t k = 0; k < length; ++k) {
        found[overhanging] = first + k;
        overhanging += orient::isOverhang(normals[k], overhangCosine) ? 1 : 0;
    }
    for (std::size_t k = 0; k < overhanging; ++k) {
        const auto& [a, b, c] = mesh.flat.corners[found[k]];
        if (isAbove || (height(a) + height(b) + height(c)) / 3.0f > kPlateGap) take(found[k]);
    }
}

/// What is known of a block before a look at its facets.
struct OverhangingBlock {
    bool isPossible;       ///< some facet may overhang
    bool isCertain;        ///< all do
    bool isAbove = false;  ///< all lie above the gap

    OverhangingBlock(const PoseMesh& mesh, const orient::TurnedPart& part,
                     const UVector3<float>& up, float overhangCosine, std::size_t block) {
        const BlockBounds::Range normals = mesh.normalBounds[block].along(up);
        isPossible = orient::isOverhang(normals.least, overhangCosine);
        isCertain = orient::isOverhang(normals.most, overhangCosine);
        if (isPossible) isAbove = leastHeight(mesh, part, block) > kPlateGap;
    }
};

}  // namespace

CoordinateRange coordinateRange(const PoseMesh& mesh, const orient::TurnedCoordinate& coordinate,
                                std::size_t block) {
    const BlockBounds::Range range =
        mesh.facetBounds[block].along({coordinate.fromX, coordinate.fromY, coordinate.fromZ});
    const float rounding = std::fabs(coordinate.shift) * kRounding;
    return {range.least + coordinate.shift - rounding, range.most + coordinate.shift + rounding};
}

float leastHeight(const PoseMesh& mesh, const orient::TurnedPart& part, std::size_t block) {
    return coordinateRange(mesh, part.coordinates[2], block).least;
}

Contact contactOf(const PoseMesh& mesh, const orient::TurnedPart& part, const UVector3<float>& up) {
    const auto isLow = [&](std::int32_t v) { return part.point(mesh.flat, v).z <= kPlateGap; };
    Contact contact;
    double area = 0.0;
    const std::size_t count = mesh.areas.size();
    for (std::size_t first = 0; first < count; first += kBlockSize) {
        if (leastHeight(mesh, part, first / kBlockSize) > kPlateGap) continue;
        const std::size_t end = std::min(first + kBlockSize, count);
        for (std::size_t i = first; i < end; ++i) {
            const float normalZ = normalUp(mesh, i, up);
            if (!(normalZ < 0.0f)) continue;
            const auto& [a, b, c] = mesh.flat.corners[i];
            if (!isLow(a) || !isLow(b) || !isLow(c)) continue;
            area += static_cast<double>(-normalZ * mesh.areas[i]);
            contact.facets.push_back(static_cast<std::int32_t>(i));
        }
    }
    contact.area = static_cast<float>(area);
    return contact;
}

Overhangs overhangsOf(const PoseMesh& mesh, const orient::TurnedPart& part,
                      const UVector3<float>& up, float overhangCosine) {
    Overhangs overhangs;
    double area = 0.0;
    for (std::size_t block = 0; block < mesh.facetBounds.size(); ++block) {
        const OverhangingBlock its(mesh, part, up, overhangCosine, block);
        if (!its.isPossible) continue;
        forOverhanging(mesh, part, up, overhangCosine, block, its.isAbove, [&](std::size_t i) {
            area += static_cast<double>(mesh.areas[i]);
            overhangs.facets.push_back(static_cast<std::int32_t>(i));
        });
    }
    overhangs.area = static_cast<float>(area);
    return overhangs;
}

float overhangAreaOf(const PoseMesh& mesh, const orient::TurnedPart& part,
                     const UVector3<float>& up, float overhangCosine) {
    double area = 0.0;
    for (std::size_t block = 0; block < mesh.facetBounds.size(); ++block) {
        const OverhangingBlock its(mesh, part, up, overhangCosine, block);
        if (its.isCertain && its.isAbove) {
            area += mesh.blockAreas[block];
        } else if (its.isPossible) {
            forOverhanging(mesh, part, up, overhangCosine, block, its.isAbove,
                           [&](std::size_t i) { area += static_cast<double>(mesh.areas[i]); });
        }
    }
    return static_cast<float>(area);
}

std::int32_t countIslands(const orient::FlatMesh& mesh, const std::vector<std::int32_t>& facets) {
    if (facets.empty()) return 0;
    Patches patches(mesh.x.size());
    for (const std::int32_t facet : facets) {
        const auto& [a, b, c] = mesh.corners[static_cast<std::size_t>(facet)];
        patches.join(a, b);
        patches.join(b, c);
    }
    std::vector<bool> isSeen(mesh.x.size());
    std::vector<std::int32_t> corners;
    std::int32_t islands = 0;
    for (const std::int32_t facet : facets) {
        for (const std::int32_t v : mesh.corners[static_cast<std::size_t>(facet)]) {
            if (isSeen[static_cast<std::size_t>(v)]) continue;
            isSeen[static_cast<std::size_t>(v)] = true;
            corners.push_back(v);
            islands += patches.rootOf(v) == v ? 1 : 0;
        }
    }
    return islands > 1 ? islands - joinsByPlace(mesh, std::move(corners), patches) : islands;
}

}  // namespace Tesk::pose

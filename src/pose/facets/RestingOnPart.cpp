#include "pose/facets/RestingOnPart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "orient/sampling/TreeSampling.h"
#include "orient/turn/TurnedTriangle.h"
#include "pose/facets/FacetsFromAbove.h"

namespace Tesk::pose {

namespace {

/// A column from an overhanging facet's centroid down.
struct Drop {
    UPoint2<float> foot;
    float top;
};

float toleranceAt(float z) {
    return 1e-3f + 1e-5f * z;
}

Drop dropFrom(const orient::TurnedTriangle& t) {
    return {{(t.a.x + t.b.x + t.c.x) / 3.0f, (t.a.y + t.b.y + t.c.y) / 3.0f},
            (t.a.z + t.b.z + t.c.z) / 3.0f};
}

/// Cells over the drops' rectangle, to tell quickly what cannot meet: per cell the highest drop,
/// and the lowest of the facets that reach into it.
class DropCells {
 public:
    explicit DropCells(const std::vector<Drop>& drops) : m_highest(kSide * kSide, -kFar) {
        for (const Drop& drop : drops) {
            m_rect.extend({drop.foot.x, drop.foot.x, drop.foot.y, drop.foot.y});
        }
        m_perX = scaleOf(m_rect.maxX - m_rect.minX);
        m_perY = scaleOf(m_rect.maxY - m_rect.minY);
        for (const Drop& drop : drops) {
            float& highest = m_highest[cellOf(drop.foot)];
            highest = std::max(highest, drop.top);
            m_top = std::max(m_top, drop.top);
        }
        m_lowest.assign(m_highest.size(), kFar);
    }

    float top() const { return m_top; }

    /// Whether a facet of that rectangle may lie below a drop; if so, keeps it in mind.
    bool mayBeBelow(const orient::Rect& rect, float lowest) {
        if (!(rect.minX <= m_rect.maxX && m_rect.minX <= rect.maxX && rect.minY <= m_rect.maxY &&
              m_rect.minY <= rect.maxY)) {
            return false;
        }
        bool isBelow = false;
        const std::size_t endX = cellAt(rect.maxX, m_rect.minX, m_perX);
        const std::size_t endY = cellAt(rect.maxY, m_rect.minY, m_perY);
        for (std::size_t x = cellAt(rect.minX, m_rect.minX, m_perX); x <= endX; ++x) {
            for (std::size_t y = cellAt(rect.minY, m_rect.minY, m_perY); y <= endY; ++y) {
                const std::size_t cell = x * kSide + y;
                if (!(m_highest[cell] > lowest)) continue;
                isBelow = true;
                m_lowest[cell] = std::min(m_lowest[cell], lowest);
            }
        }
        return isBelow;
    }

    /// Whether a drop may meet one of the facets that were kept in mind.
    bool mayMeet(const Drop& drop) const { return m_lowest[cellOf(drop.foot)] < drop.top; }

 private:
    static constexpr std::size_t kSide = 128;
    static constexpr float kFar = std::numeric_limits<float>::max();

    static float scaleOf(float extent) {
        return extent > 0.0f ? static_cast<float>(kSide) / extent : 0.0f;
    }
    static std::size_t cellAt(float value, float first, float perUnit) {
        const float cell = (value - first) * perUnit;
        if (!(cell > 0.0f)) return 0;
        return cell < static_cast<float>(kSide) ? static_cast<std::size_t>(cell) : kSide - 1;
    }
    std::size_t cellOf(const UPoint2<float>& p) const {
        return cellAt(p.x, m_rect.minX, m_perX) * kSide + cellAt(p.y, m_rect.minY, m_perY);
    }

    orient::Rect m_rect;
    float m_perX = 0.0f;
    float m_perY = 0.0f;
    float m_top = -kFar;
    std::vector<float> m_highest;
    std::vector<float> m_lowest;
};

/// The highest corner of some facets.
float topOf(const PoseMesh& mesh, const orient::TurnedPart& part,
            const std::vector<std::int32_t>& facets) {
    float top = -std::numeric_limits<float>::infinity();
    std::size_t block = mesh.facetBounds.size();
    bool canBeHigher = false;
    for (const std::int32_t facet : facets) {
        const std::size_t itsBlock = static_cast<std::size_t>(facet) / kBlockSize;
        if (itsBlock != block) canBeHigher = mostHeight(mesh, part, itsBlock) > top;
        block = itsBlock;
        if (!canBeHigher) continue;
        for (const std::int32_t v : mesh.flat.corners[static_cast<std::size_t>(facet)]) {
            top = std::max(top, part.point(mesh.flat, v).z);
        }
    }
    return top;
}

/// The facets that face up and have a corner below a height.
std::vector<std::int32_t> upwardBelow(const PoseMesh& mesh, const orient::TurnedPart& part,
                                      const UVector3<float>& up, float top) {
    std::vector<std::int32_t> facets;
    const std::size_t count = mesh.areas.size();
    for (std::size_t first = 0; first < count; first += kBlockSize) {
        const std::size_t block = first / kBlockSize;
        if (!(mesh.normalBounds[block].mostAlong(up) > 0.0f)) continue;
        if (!(leastHeight(mesh, part, block) < top)) continue;
        for (std::size_t i = first; i < std::min(first + kBlockSize, count); ++i) {
            const auto facet = static_cast<std::int32_t>(i);
            if (!((mesh.normal(facet) | up) > 0.0f)) continue;
            const auto& corners = mesh.flat.corners[i];
            const bool isBelow = std::any_of(corners.begin(), corners.end(), [&](std::int32_t v) {
                return part.point(mesh.flat, v).z < top;
            });
            if (isBelow) facets.push_back(facet);
        }
    }
    return facets;
}

/// Of upward facets, those that may lie below a drop.
std::vector<FacetFromAbove> facetsBelow(const PoseMesh& mesh, const orient::TurnedPart& part,
                                        const std::vector<std::int32_t>& upward, DropCells& cells) {
    std::vector<FacetFromAbove> below;
    for (const std::int32_t facet : upward) {
        const orient::TurnedTriangle t(mesh.flat, part, facet);
        const float lowest = std::min({t.a.z, t.b.z, t.c.z});
        if (!(lowest < cells.top())) continue;
        const orient::Rect rect = orient::rectOf(t);
        if (cells.mayBeBelow(rect, lowest)) below.push_back({rect, lowest, facet});
    }
    return below;
}

}  // namespace

float areaRestingOnPart(const PoseMesh& mesh, const orient::TurnedPart& part,
                        const UVector3<float>& up, const std::vector<std::int32_t>& overhanging) {
    const std::vector<std::int32_t> upward =
        upwardBelow(mesh, part, up, topOf(mesh, part, overhanging));
    if (upward.empty()) return 0.0f;
    std::vector<Drop> drops;
    drops.reserve(overhanging.size());
    for (const std::int32_t facet : overhanging) {
        drops.push_back(dropFrom(orient::TurnedTriangle(mesh.flat, part, facet)));
    }
    DropCells cells(drops);
    const FacetsFromAbove below(facetsBelow(mesh, part, upward, cells));
    double area = 0.0;
    for (std::size_t i = 0; i < drops.size(); ++i) {
        const Drop& drop = drops[i];
        if (!cells.mayMeet(drop)) continue;
        const auto isHit = [&](const FacetFromAbove& facet) {
            const orient::TurnedTriangle t(mesh.flat, part, facet.facet);
            return orient::isUnder(t, drop.foot) &&
                   orient::heightOver(t, drop.foot) < drop.top - toleranceAt(drop.top);
        };
        const bool isMet = below.anyBelow(drop.foot, drop.top, isHit);
        if (isMet)
            area += static_cast<double>(mesh.areas[static_cast<std::size_t>(overhanging[i])]);
    }
    return static_cast<float>(area);
}

}  // namespace Tesk::pose

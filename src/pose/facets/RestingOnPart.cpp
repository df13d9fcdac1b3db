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
        if (!meets(rect)) return false;
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

    /// Whether any facet within a rectangle, and nowhere lower than `lowest`, may lie below a drop.
    bool anyAbove(const orient::Rect& rect, float lowest) const {
        if (!meets(rect)) return false;
        const std::size_t endX = cellAt(rect.maxX, m_rect.minX, m_perX);
        const std::size_t endY = cellAt(rect.maxY, m_rect.minY, m_perY);
        for (std::size_t x = cellAt(rect.minX, m_rect.minX, m_perX); x <= endX; ++x) {
            for (std::size_t y = cellAt(rect.minY, m_rect.minY, m_perY); y <= endY; ++y) {
                if (m_highest[x * kSide + y] > lowest) return true;
            }
        }
        return false;
    }

    /// Whether a drop may meet one of the facets that were kept in mind.
    bool mayMeet(const Drop& drop) const { return m_lowest[cellOf(drop.foot)] < drop.top; }

 private:
    static constexpr std::size_t kSide = 128;
    static constexpr float kFar = std::numeric_limits<float>::max();

    bool meets(const orient::Rect& rect) const {
        return rect.minX <= m_rect.maxX && m_rect.minX <= rect.maxX && rect.minY <= m_rect.maxY &&
               m_rect.minY <= rect.maxY;
    }
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
    const orient::TurnedCoordinate& z = part.coordinates[2];
    float top = -std::numeric_limits<float>::infinity();
    std::size_t block = mesh.facetBounds.size();
    bool canBeHigher = false;
    for (const std::int32_t facet : facets) {
        const std::size_t itsBlock = static_cast<std::size_t>(facet) / kBlockSize;
        if (itsBlock != block) canBeHigher = coordinateRange(mesh, z, itsBlock).most > top;
        block = itsBlock;
        if (!canBeHigher) continue;
        for (const std::int32_t v : mesh.flat.corners[static_cast<std::size_t>(facet)]) {
            top = std::max(top, part.point(mesh.flat, v).z);
        }
    }
    return top;
}

/// Calls visit(block, its least height) for blocks that may have upward facets below a height,
/// until it returns true; whether it did.
template <class Visit>
bool anyUpwardBlock(const PoseMesh& mesh, const orient::TurnedPart& part, const UVector3<float>& up,
                    float top, Visit visit) {
    for (std::size_t block = 0; block < mesh.facetBounds.size(); ++block) {
        if (!(mesh.normalBounds[block].mostAlong(up) > 0.0f)) continue;
        const float lowest = leastHeight(mesh, part, block);
        if (lowest < top && visit(block, lowest)) return true;
    }
    return false;
}

/// Calls visit(facet) for the upward facets of a block until it returns true; whether it did.
template <class Visit>
bool anyUpwardFacet(const PoseMesh& mesh, const UVector3<float>& up, std::size_t block,
                    Visit visit) {
    const std::size_t first = block * kBlockSize;
    const std::size_t end = std::min(first + kBlockSize, mesh.areas.size());
    for (std::size_t i = first; i < end; ++i) {
        const auto facet = static_cast<std::int32_t>(i);
        if ((mesh.normal(facet) | up) > 0.0f && visit(facet)) return true;
    }
    return false;
}

/// Whether any facet that faces up has a corner below a height.
bool anyUpwardBelow(const PoseMesh& mesh, const orient::TurnedPart& part, const UVector3<float>& up,
                    float top) {
    const auto isBelow = [&](std::int32_t facet) {
        const auto& corners = mesh.flat.corners[static_cast<std::size_t>(facet)];
        return std::any_of(corners.begin(), corners.end(),
                           [&](std::int32_t v) { return part.point(mesh.flat, v).z < top; });
    };
    return anyUpwardBlock(mesh, part, up, top, [&](std::size_t block, float) {
        return anyUpwardFacet(mesh, up, block, isBelow);
    });
}

/// A rectangle around all facets of a block, seen from above.
orient::Rect rectOfBlock(const PoseMesh& mesh, const orient::TurnedPart& part, std::size_t block) {
    const CoordinateRange x = coordinateRange(mesh, part.coordinates[0], block);
    const CoordinateRange y = coordinateRange(mesh, part.coordinates[1], block);
    return {x.least, x.most, y.least, y.most};
}

/// The facets that face up and may lie below a drop.
std::vector<FacetFromAbove> facetsBelow(const PoseMesh& mesh, const orient::TurnedPart& part,
                                        const UVector3<float>& up, DropCells& cells) {
    std::vector<FacetFromAbove> below;
    const auto addIfBelow = [&](std::int32_t facet) {
        const orient::TurnedTriangle t(mesh.flat, part, facet);
        const float lowest = std::min({t.a.z, t.b.z, t.c.z});
        if (!(lowest < cells.top())) return false;
        const orient::Rect rect = orient::rectOf(t);
        if (cells.mayBeBelow(rect, lowest)) below.push_back({rect, lowest, facet});
        return false;
    };
    anyUpwardBlock(mesh, part, up, cells.top(), [&](std::size_t block, float lowest) {
        return cells.anyAbove(rectOfBlock(mesh, part, block), lowest) &&
               anyUpwardFacet(mesh, up, block, addIfBelow);
    });
    return below;
}

}  // namespace

float areaRestingOnPart(const PoseMesh& mesh, const orient::TurnedPart& part,
                        const UVector3<float>& up, const std::vector<std::int32_t>& overhanging) {
    if (!anyUpwardBelow(mesh, part, up, topOf(mesh, part, overhanging))) return 0.0f;
    std::vector<Drop> drops;
    drops.reserve(overhanging.size());
    for (const std::int32_t facet : overhanging) {
        drops.push_back(dropFrom(orient::TurnedTriangle(mesh.flat, part, facet)));
    }
    DropCells cells(drops);
    const FacetsFromAbove below(facetsBelow(mesh, part, up, cells));
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

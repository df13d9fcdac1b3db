#include "pose/RestingOnPart.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "orient/sampling/TreeSampling.h"
#include "orient/sampling/TriangleRectTree.h"
#include "orient/turn/TurnedTriangle.h"

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

/// The facets that face up and may lie below a drop.
std::vector<orient::TriangleRect> facetsBelow(const PoseMesh& mesh, const orient::TurnedPart& part,
                                              const UVector3<float>& up, DropCells& cells) {
    std::vector<orient::TriangleRect> below;
    const std::size_t count = mesh.areas.size();
    for (std::size_t first = 0; first < count; first += kBlockSize) {
        const std::size_t block = first / kBlockSize;
        if (!(mesh.normalBounds[block].mostAlong(up) > 0.0f)) continue;
        if (!(leastHeight(mesh, part, block) < cells.top())) continue;
        for (std::size_t i = first; i < std::min(first + kBlockSize, count); ++i) {
            const float normalZ =
                mesh.normalX[i] * up.x + mesh.normalY[i] * up.y + mesh.normalZ[i] * up.z;
            if (!(normalZ > 0.0f)) continue;
            const orient::TurnedTriangle t(mesh.flat, part, static_cast<std::int32_t>(i));
            const float lowest = std::min({t.a.z, t.b.z, t.c.z});
            if (!(lowest < cells.top())) continue;
            const orient::Rect rect = orient::rectOf(t);
            if (cells.mayBeBelow(rect, lowest)) {
                below.push_back({rect, dropFrom(t).foot, static_cast<std::int32_t>(i)});
            }
        }
    }
    return below;
}

}  // namespace

float areaRestingOnPart(const PoseMesh& mesh, const orient::TurnedPart& part,
                        const UVector3<float>& up, const std::vector<std::int32_t>& overhanging) {
    if (overhanging.empty()) return 0.0f;
    std::vector<Drop> drops;
    drops.reserve(overhanging.size());
    for (const std::int32_t facet : overhanging) {
        drops.push_back(dropFrom(orient::TurnedTriangle(mesh.flat, part, facet)));
    }
    DropCells cells(drops);
    const orient::TriangleRectTree tree(facetsBelow(mesh, part, up, cells));
    double area = 0.0;
    Drop drop{};
    bool isMet = false;
    const orient::TriangleRectTree::Visitor meet = [&](int triangle) {
        if (isMet) return;
        const orient::TurnedTriangle t(mesh.flat, part, triangle);
        if (!(std::min({t.a.z, t.b.z, t.c.z}) < drop.top)) return;
        if (!orient::rectOf(t).contains(drop.foot) || !orient::isUnder(t, drop.foot)) return;
        isMet = orient::heightOver(t, drop.foot) < drop.top - toleranceAt(drop.top);
    };
    for (std::size_t i = 0; i < drops.size(); ++i) {
        if (!cells.mayMeet(drops[i])) continue;
        drop = drops[i];
        isMet = false;
        tree.query(drop.foot, meet);
        if (!isMet) continue;
        area += static_cast<double>(mesh.areas[static_cast<std::size_t>(overhanging[i])]);
    }
    return static_cast<float>(area);
}

}  // namespace Tesk::pose

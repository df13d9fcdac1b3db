#include "SupportSampling.h"

#include <algorithm>
#include <cmath>

#include "TriangleRectTree.h"

namespace {

/// A turned triangle's three corners.
struct Corners {
    UPoint3<float> a, b, c;
};

Corners cornersOf(const TurnedMesh& mesh, std::int32_t triangle) {
    const auto point = [&](std::int32_t vertex) {
        const auto v = static_cast<std::size_t>(vertex);
        return UPoint3<float>(mesh.x[v], mesh.y[v], mesh.z[v]);
    };
    const auto& [a, b, c] = mesh.corners[static_cast<std::size_t>(triangle)];
    return {point(a), point(b), point(c)};
}

UPoint2<float> fromAbove(const UPoint3<float>& p) {
    return {p.x, p.y};
}

/// Grows a bound by comparisons that pass over a NaN.
void extend(float& low, float& high, float value) {
    low = value < low ? value : low;
    high = value > high ? value : high;
}

Rect rectOf(float xa, float xb, float xc, float ya, float yb, float yc) {
    Rect rect;
    for (const float x : {xa, xb, xc}) extend(rect.minX, rect.maxX, x);
    for (const float y : {ya, yb, yc}) extend(rect.minY, rect.maxY, y);
    return rect;
}

Rect rectOf(const Corners& t) {
    return rectOf(t.a.x, t.b.x, t.c.x, t.a.y, t.b.y, t.c.y);
}

/// The triangles whose rectangle holds a sample point: on a fine mesh, almost none.
std::vector<TriangleRect> triangleRects(const TurnedMesh& mesh, const SampleGrid& grid) {
    std::vector<TriangleRect> rects;
    for (std::size_t i = 0; i < mesh.corners.size(); ++i) {
        const auto triangle = static_cast<std::int32_t>(i);
        const Corners t = cornersOf(mesh, triangle);
        const Rect rect = rectOf(t);
        if (!grid.columns.hasSampleIn(rect.minX, rect.maxX) ||
            !grid.rows.hasSampleIn(rect.minY, rect.maxY)) {
            continue;
        }
        rects.push_back(
            {rect, {(t.a.x + t.b.x + t.c.x) / 3.0f, (t.a.y + t.b.y + t.c.y) / 3.0f}, triangle});
    }
    return rects;
}

/// Where p lies against the three edges: inside for either winding, or exactly on the line through
/// an edge, which within the triangle's rectangle counts as inside too.
bool isUnder(const Corners& t, const UPoint2<float>& p) {
    const auto side = [&](const UPoint3<float>& from, const UPoint3<float>& to) {
        return (fromAbove(to) - fromAbove(from)) * (p - fromAbove(from));
    };
    const float ab = side(t.a, t.b);
    const float bc = side(t.b, t.c);
    const float ca = side(t.c, t.a);
    if (ab == 0.0f || bc == 0.0f || ca == 0.0f) return true;
    return (ab < 0.0f && bc < 0.0f && ca < 0.0f) || (ab > 0.0f && bc > 0.0f && ca > 0.0f);
}

/// Where a column meets a triangle's plane.
struct Hit {
    std::int32_t triangle;
    float z;
};

constexpr std::int32_t kGround = -1;

/// The plane's z above p, by Cramer's rule; not finite where the triangle stands upright.
/// Differences and products of floats are exact in double; the hit is put together in float.
float planeHeight(const Corners& t, const UPoint2<float>& p) {
    const UVector3<float> u = t.b - t.a;
    const UVector3<float> v = t.c - t.a;
    const UVector2<float> d = p - fromAbove(t.a);
    const UVector2<double> du(static_cast<double>(u.x), static_cast<double>(u.y));
    const UVector2<double> dv(static_cast<double>(v.x), static_cast<double>(v.y));
    const UVector2<double> dp(static_cast<double>(d.x), static_cast<double>(d.y));
    const double determinant = du * dv;
    if (determinant == 0.0) return std::numeric_limits<float>::quiet_NaN();
    const auto s = static_cast<float>((dp * dv) / determinant);
    const auto r = static_cast<float>((du * dp) / determinant);
    return t.a.z + u.z * s + v.z * r;
}

/// The upward part of the triangle's unit normal.
float normalZ(const Corners& t) {
    return ((t.b - t.a) * (t.c - t.b)).GetNormal().z;
}

/// Measures one column after another, with lists that are reused.
class ColumnSampler {
 public:
    ColumnSampler(const TurnedMesh& mesh, const SampleGrid& grid, float overhangCosine)
        : m_mesh(mesh),
          m_cellArea(grid.cellArea),
          m_overhangCosine(overhangCosine),
          m_tree(triangleRects(mesh, grid)) {}

    const Rect& bounds() const { return m_tree.bounds(); }

    void sample(const UPoint2<float>& p, SupportMeasures& sums) {
        m_taken.clear();
        m_tree.query(p, [&](std::int32_t triangle) {
            const Corners t = cornersOf(m_mesh, triangle);
            if (rectOf(t).contains(p) && isUnder(t, p)) m_taken.push_back(triangle);
        });
        if (m_taken.size() < 2) return;
        collectHits(p);
        sums.supportVolume += supportLength(sums.overhangArea) * m_cellArea;
        sums.projectedArea += m_cellArea;
    }

 private:
    /// The distinct heights at which the column crosses the part, ascending, the ground before
    /// them and without the topmost; empty where they do not come in pairs.
    void collectHits(const UPoint2<float>& p) {
        m_hits.clear();
        for (const std::int32_t triangle : m_taken) {
            const float z = planeHeight(cornersOf(m_mesh, triangle), p);
            if (std::isfinite(z)) m_hits.push_back({triangle, z});
        }
        std::sort(m_hits.begin(), m_hits.end(), [](const Hit& a, const Hit& b) {
            return a.z != b.z ? a.z < b.z : a.triangle < b.triangle;
        });
        m_hits.erase(std::unique(m_hits.begin(), m_hits.end(),
                                 [](const Hit& a, const Hit& b) { return a.z == b.z; }),
                     m_hits.end());
        if (m_hits.size() % 2 != 0) m_hits.clear();
        if (m_hits.empty()) return;
        m_hits.pop_back();
        m_hits.insert(m_hits.begin(), {kGround, 0.0f});
    }

    /// The lengths below overhanging triangles; adds those triangles' areas.
    float supportLength(float& overhangArea) const {
        float length = 0.0f;
        for (std::size_t k = 1; k < m_hits.size(); k += 2) {
            const Hit& hit = m_hits[k];
            if (!(normalZ(cornersOf(m_mesh, hit.triangle)) < -m_overhangCosine)) continue;
            length += std::fabs(hit.z - m_hits[k - 1].z);
            overhangArea += m_mesh.areas[static_cast<std::size_t>(hit.triangle)];
        }
        return length;
    }

    const TurnedMesh& m_mesh;
    float m_cellArea;
    float m_overhangCosine;
    TriangleRectTree m_tree;
    std::vector<std::int32_t> m_taken;
    std::vector<Hit> m_hits;
};

}  // namespace

SupportMeasures sampleSupport(const TurnedMesh& mesh, const SampleGrid& grid,
                              float overhangCosine) {
    SupportMeasures sums;
    if (grid.columns.size() == 0 || grid.rows.size() == 0) return sums;
    ColumnSampler sampler(mesh, grid, overhangCosine);
    // Columns beyond the triangles contribute nothing.
    const Rect bounds = sampler.bounds();
    const std::size_t firstColumn = grid.columns.countBelow(bounds.minX);
    const std::size_t firstRow = grid.rows.countBelow(bounds.minY);
    for (std::size_t i = firstColumn; i < grid.columns.size(); ++i) {
        if (!(grid.columns[i] <= bounds.maxX)) break;
        for (std::size_t j = firstRow; j < grid.rows.size(); ++j) {
            if (!(grid.rows[j] <= bounds.maxY)) break;
            sampler.sample({grid.columns[i], grid.rows[j]}, sums);
        }
    }
    return sums;
}

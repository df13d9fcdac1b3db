#include "orient/TreePerCandidate.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orient/grid/SampleGrid.h"
#include "orient/rotation/CandidateRotation.h"
#include "orient/sampling/TriangleRectTree.h"

using namespace Tesk::orient;

namespace {

using Matrix = UMatrix4<float>;
using Point = UPoint3<float>;

struct Corners {
    Point a, b, c;
};

struct Hit {
    int triangle;
    float z;
};

UBox3<float> boxThrough(const UMesh<float>& mesh, const Matrix& m) {
    UBox3<float> box;
    for (std::int32_t i = 0; i < mesh.VertexCount(); ++i) {
        if (!mesh.Vertex(i)->IsD()) box.Extend(mesh.Vertex(i)->P() * m);
    }
    return box;
}

Corners cornersThrough(const UMesh<float>& mesh, int triangle, const Matrix& m) {
    const UTriangle<float>& t = *mesh.Triangle(triangle);
    return {t.P(0) * m, t.P(1) * m, t.P(2) * m};
}

Rect rectOf(const Corners& t) {
    Rect rect;
    for (const Point& p : {t.a, t.b, t.c}) rect.extend({p.x, p.x, p.y, p.y});
    return rect;
}

float side(const Point& from, const Point& to, const UPoint2<float>& p) {
    const UPoint2<float> origin(from.x, from.y);
    return (UPoint2<float>(to.x, to.y) - origin) * (p - origin);
}

bool isUnder(const Corners& t, const UPoint2<float>& p) {
    const float ab = side(t.a, t.b, p);
    const float bc = side(t.b, t.c, p);
    const float ca = side(t.c, t.a, p);
    return ab == 0 || bc == 0 || ca == 0 || (ab < 0 && bc < 0 && ca < 0) ||
           (ab > 0 && bc > 0 && ca > 0);
}

float planeHeight(const Corners& t, const UPoint2<float>& p) {
    const UVector3<float> u = t.b - t.a;
    const UVector3<float> v = t.c - t.a;
    const double dx = p.x - t.a.x;
    const double dy = p.y - t.a.y;
    const double determinant = double(u.x) * v.y - double(u.y) * v.x;
    if (determinant == 0.0) return std::nanf("");
    const auto s = float((dx * v.y - dy * v.x) / determinant);
    const auto r = float((u.x * dy - u.y * dx) / determinant);
    return t.a.z + u.z * s + v.z * r;
}

class Evaluation {
 public:
    Evaluation(const std::vector<float>& areas, MeshKernel& kernel, const Matrix& transform,
               float overhangAngle)
        : m_areas(areas),
          m_mesh(*kernel.getMesh()),
          m_transform(transform),
          m_overhangCosine(float(Tesk::cosine(double(overhangAngle) * std::numbers::pi / 180.0))),
          m_tree(allRects()) {}

    void sampleAll(const SampleGrid& grid, BaselineMeasures& sums) {
        for (std::size_t i = 0; i < grid.columns.size(); ++i) {
            for (std::size_t j = 0; j < grid.rows.size(); ++j) {
                sample({grid.columns[i], grid.rows[j]}, grid.cellArea, sums);
            }
        }
    }

 private:
    std::vector<TriangleRect> allRects() const {
        std::vector<TriangleRect> rects;
        for (std::int32_t i = 0; i < m_mesh.TriangleCount(); ++i) {
            const Corners t = cornersThrough(m_mesh, i, m_transform);
            rects.push_back(
                {rectOf(t), {(t.a.x + t.b.x + t.c.x) / 3.0f, (t.a.y + t.b.y + t.c.y) / 3.0f}, i});
        }
        return rects;
    }

    void sample(const UPoint2<float>& p, float cellArea, BaselineMeasures& sums) const {
        std::vector<int> taken;
        m_tree.query(p, [&](int triangle) {
            const Corners t = cornersThrough(m_mesh, triangle, m_transform);
            if (rectOf(t).contains(p) && isUnder(t, p)) taken.push_back(triangle);
        });
        if (taken.size() < 2) return;
        sums.supportVolume += supportLength(hitsOf(taken, p), sums.overhangArea) * cellArea;
        sums.projectedArea += cellArea;
    }

    std::vector<Hit> hitsOf(const std::vector<int>& taken, const UPoint2<float>& p) const {
        std::vector<Hit> hits;
        for (const int triangle : taken) {
            const float z = planeHeight(cornersThrough(m_mesh, triangle, m_transform), p);
            if (std::isfinite(z)) hits.push_back({triangle, z});
        }
        std::sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) {
            return a.z != b.z ? a.z < b.z : a.triangle < b.triangle;
        });
        const auto sameHeight = [](const Hit& a, const Hit& b) { return a.z == b.z; };
        hits.erase(std::unique(hits.begin(), hits.end(), sameHeight), hits.end());
        if (hits.empty() || hits.size() % 2 != 0) return {};
        hits.pop_back();
        hits.insert(hits.begin(), {-1, 0.0f});
        return hits;
    }

    float supportLength(const std::vector<Hit>& hits, float& overhangArea) const {
        float length = 0.0f;
        for (std::size_t k = 1; k < hits.size(); k += 2) {
            const Corners t = cornersThrough(m_mesh, hits[k].triangle, m_transform);
            if (!(((t.b - t.a) * (t.c - t.b)).GetNormal().z < -m_overhangCosine)) continue;
            length += std::fabs(hits[k].z - hits[k - 1].z);
            overhangArea += m_areas[std::size_t(hits[k].triangle)];
        }
        return length;
    }

    const std::vector<float>& m_areas;
    const UMesh<float>& m_mesh;
    Matrix m_transform;
    float m_overhangCosine;
    TriangleRectTree m_tree;
};

}  // namespace

BaselineMeasures evaluateWithTreePerCandidate(const std::vector<float>& areas, MeshKernel& mesh,
                                              const UVector3<float>& direction,
                                              const OptimizeOrient::Configure& config) {
    const Point k = boxThrough(*mesh.getMesh(), mesh.getMatrix()).Center();
    Matrix transform =
        mesh.getMatrix() * Matrix::CreateTransfMatrix({-k.x, -k.y, -k.z}) *
        Matrix::CreateRotateMatrix(candidateAngle(direction), candidateAxis(direction)) *
        Matrix::CreateTransfMatrix({k.x, k.y, k.z});
    UBox3<float> box = boxThrough(*mesh.getMesh(), transform);
    if (config.baseHeight > -1.0f) {
        transform *= Matrix::CreateTransfMatrix({0.0f, 0.0f, config.baseHeight - box.MinZ()});
        box = boxThrough(*mesh.getMesh(), transform);
    }
    BaselineMeasures measures;
    measures.boxVolume = box.Volume();
    measures.height = box.MaxZ() - box.MinZ();
    Evaluation(areas, mesh, transform, config.overhangAngle)
        .sampleAll(makeSampleGrid(box), measures);
    return measures;
}

#include "plain/PlainEvaluation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "TeskDataBasic/UBox3.h"
#include "TeskDataBasic/UPoint2.h"
#include "TeskMeshData/TeskMath.h"

namespace {

using Matrix = UMatrix4<float>;
using Point = UPoint3<float>;
using Vector = UVector3<float>;

constexpr int kGround = -1;

struct Corners {
    Point a, b, c;
};

/// A triangle's rectangle seen from above, bounds included.
struct Rectangle {
    float minX = std::numeric_limits<float>::max();
    float maxX = -std::numeric_limits<float>::max();
    float minY = std::numeric_limits<float>::max();
    float maxY = -std::numeric_limits<float>::max();
};

struct Hit {
    int triangle;
    float z;
};

struct CellSize {
    float x, y;
};

/// The mesh as one evaluation sees it.
struct Scene {
    const UMesh<float>& mesh;
    const std::vector<float>& areas;
    Matrix full;
    float threshold;
    std::vector<Rectangle> rectangles;
};

Corners cornersOf(const Scene& scene, int triangle) {
    const UTriangle<float>& t = *scene.mesh.Triangle(triangle);
    return {t.P(0) * scene.full, t.P(1) * scene.full, t.P(2) * scene.full};
}

UBox3<float> boxThrough(const UMesh<float>& mesh, const Matrix& matrix) {
    UBox3<float> box;
    for (int i = 0; i < mesh.VertexCount(); ++i) {
        const UVertex<float>& vertex = *mesh.Vertex(i);
        if (!vertex.IsD()) box.Extend(vertex.P() * matrix);
    }
    return box;
}

Rectangle rectangleOf(const Corners& corners) {
    Rectangle r;
    for (const Point& p : {corners.a, corners.b, corners.c}) {
        if (p.x < r.minX) r.minX = p.x;
        if (p.x > r.maxX) r.maxX = p.x;
        if (p.y < r.minY) r.minY = p.y;
        if (p.y > r.maxY) r.maxY = p.y;
    }
    return r;
}

/// The number without its fraction; nothing where a 32-bit integer cannot hold it.
std::optional<float> wholePart(float value) {
    if (!(value > -2147483648.0f && value < 2147483648.0f)) return std::nullopt;
    return static_cast<float>(static_cast<int>(value));
}

std::optional<CellSize> cellSizeFor(float w, float h) {
    const std::optional<float> wholeW = wholePart(w * 100.0f);
    const std::optional<float> wholeH = wholePart(h * 100.0f);
    if (!wholeW || !wholeH) return std::nullopt;
    CellSize size{};
    if (w / h < 1.0f) {
        size.x = *wholeW / 4000.0f;
        const std::optional<float> count = wholePart(*wholeH / size.x);
        if (!count) return std::nullopt;
        size.y = (h * 100.0f) / *count;
    } else {
        size.y = *wholeH / 4000.0f;
        const std::optional<float> count = wholePart(*wholeW / size.y);
        if (!count) return std::nullopt;
        size.x = (w * 100.0f) / *count;
    }
    if (!(size.x > 0.0f) || !(size.y > 0.0f)) return std::nullopt;
    return size;
}

float edgeTest(const Point& a, const Point& b, const UPoint2<float>& p) {
    const UPoint2<float> flatA(a.x, a.y);
    const UPoint2<float> flatB(b.x, b.y);
    return (flatB - flatA) * (p - flatA);
}

bool isTaken(const Corners& t, const UPoint2<float>& p) {
    const float e0 = edgeTest(t.a, t.b, p);
    const float e1 = edgeTest(t.b, t.c, p);
    const float e2 = edgeTest(t.c, t.a, p);
    if (e0 == 0.0f || e1 == 0.0f || e2 == 0.0f) return true;
    if (e0 < 0.0f && e1 < 0.0f && e2 < 0.0f) return true;
    return e0 > 0.0f && e1 > 0.0f && e2 > 0.0f;
}

/// Where the vertical line through p crosses the triangle's plane.
std::optional<float> crossingHeight(const Corners& t, const UPoint2<float>& p) {
    const Vector ab = t.b - t.a;
    const Vector ac = t.c - t.a;
    const double abX = ab.x;
    const double abY = ab.y;
    const double acX = ac.x;
    const double acY = ac.y;
    const double apX = p.x - t.a.x;
    const double apY = p.y - t.a.y;
    const double determinant = abX * acY - acX * abY;
    if (determinant == 0.0) return std::nullopt;
    const auto s = static_cast<float>((apX * acY - acX * apY) / determinant);
    const auto u = static_cast<float>((abX * apY - apX * abY) / determinant);
    return ((t.a + ab * s) + ac * u).z;
}

std::vector<Hit> hitsOf(const Scene& scene, const std::vector<int>& taken,
                        const UPoint2<float>& p) {
    std::vector<Hit> hits;
    for (const int triangle : taken) {
        const std::optional<float> z = crossingHeight(cornersOf(scene, triangle), p);
        if (z && std::isfinite(*z)) hits.push_back({triangle, *z});
    }
    std::sort(hits.begin(), hits.end(), [](const Hit& l, const Hit& r) {
        return l.z < r.z || (l.z == r.z && l.triangle < r.triangle);
    });
    std::vector<Hit> distinct;
    for (const Hit& hit : hits) {
        if (distinct.empty() || distinct.back().z != hit.z) distinct.push_back(hit);
    }
    return distinct;
}

float supportLength(const Scene& scene, std::vector<Hit> hits, float& overhangArea) {
    if (hits.empty() || hits.size() % 2 == 1) return 0.0f;
    hits.pop_back();
    hits.insert(hits.begin(), Hit{kGround, 0.0f});
    float length = 0.0f;
    for (std::size_t k = 1; k < hits.size(); k += 2) {
        const Corners t = cornersOf(scene, hits[k].triangle);
        const Vector normal = ((t.b - t.a) * (t.c - t.b)).GetNormal();
        if (normal.z < -scene.threshold) {
            length += std::fabs(hits[k].z - hits[k - 1].z);
            overhangArea += scene.areas[static_cast<std::size_t>(hits[k].triangle)];
        }
    }
    return length;
}

void samplePoint(const Scene& scene, const std::vector<int>& triangles, const UPoint2<float>& p,
                 float cellArea, PlainScores& scores) {
    std::vector<int> taken;
    for (const int i : triangles) {
        const Rectangle& r = scene.rectangles[static_cast<std::size_t>(i)];
        const bool isInRectangle = r.minX <= p.x && p.x <= r.maxX && r.minY <= p.y && p.y <= r.maxY;
        if (isInRectangle && isTaken(cornersOf(scene, i), p)) taken.push_back(i);
    }
    if (taken.size() < 2) return;
    const float length = supportLength(scene, hitsOf(scene, taken, p), scores.overhangArea);
    scores.supportVolume += length * cellArea;
    scores.projectedArea += cellArea;
}

std::vector<int> trianglesToTry(const Scene& scene, float x, PlainSearch search) {
    std::vector<int> triangles;
    for (int i = 0; i < scene.mesh.TriangleCount(); ++i) {
        const Rectangle& r = scene.rectangles[static_cast<std::size_t>(i)];
        if (search == PlainSearch::kEveryTriangle || (r.minX <= x && x <= r.maxX)) {
            triangles.push_back(i);
        }
    }
    return triangles;
}

void sampleSupport(const Scene& scene, const UBox3<float>& box, PlainSearch search,
                   PlainScores& scores) {
    const float x0 = box.MinX() - 1.0f;
    const float x1 = box.MaxX() + 1.0f;
    const float y0 = box.MinY() - 1.0f;
    const float y1 = box.MaxY() + 1.0f;
    const std::optional<CellSize> cell = cellSizeFor(x1 - x0, y1 - y0);
    if (!cell || !(x1 > x0) || !(y1 > y0)) return;
    const float cellArea = cell->x * cell->y;
    for (float x = x0; true; x += cell->x) {
        const float sampleX = x + cell->x * 0.5f;
        const std::vector<int> triangles = trianglesToTry(scene, sampleX, search);
        for (float y = y0; true; y += cell->y) {
            samplePoint(scene, triangles, {sampleX, y + cell->y * 0.5f}, cellArea, scores);
            if (y + cell->y <= y || !(y + cell->y < y1)) break;
        }
        if (x + cell->x <= x || !(x + cell->x < x1)) break;
    }
}

}  // namespace

std::vector<float> plainAreas(const MeshKernel& mesh) {
    const std::shared_ptr<UMesh<float>> triangles = mesh.getMesh();
    std::vector<float> areas;
    for (int i = 0; i < triangles->TriangleCount(); ++i) {
        const UTriangle<float>& t = *triangles->Triangle(i);
        areas.push_back(TeskMath<float>::CalculateTriangleArea(
            t.P(0) * mesh.getMatrix(), t.P(1) * mesh.getMatrix(), t.P(2) * mesh.getMatrix()));
    }
    return areas;
}

float plainAngle(const UVector3<float>& direction) {
    const Vector up(0.0f, 0.0f, 1.0f);
    const float dot = direction.GetNormal() | up.GetNormal();
    return static_cast<float>(Tesk::arcCosine(static_cast<double>(dot)));
}

UVector3<float> plainAxis(const UVector3<float>& direction) {
    if (direction.x == 0.0f && direction.y == 0.0f && direction.z == -1.0f) {
        return {0.0f, 1.0f, 0.0f};
    }
    return direction * Vector(0.0f, 0.0f, 1.0f);
}

PlainScores plainEvaluation(const std::vector<float>& areas, const MeshKernel& mesh,
                            const UVector3<float>& direction, float overhangAngle,
                            bool computeSupport, float baseHeight, PlainSearch search) {
    const std::shared_ptr<UMesh<float>> triangles = mesh.getMesh();
    const double angleRad = static_cast<double>(overhangAngle) * 3.141592653589793 / 180.0;
    Scene scene{*triangles, areas, Matrix(), static_cast<float>(Tesk::cosine(angleRad)), {}};
    PlainScores scores;

    const Matrix turn = Matrix::CreateRotateMatrix(plainAngle(direction), plainAxis(direction));
    const Point centre = boxThrough(*triangles, mesh.getMatrix()).Center();
    scene.full = mesh.getMatrix() * Matrix::CreateTransfMatrix({-centre.x, -centre.y, -centre.z}) *
                 turn * Matrix::CreateTransfMatrix({centre.x, centre.y, centre.z});
    UBox3<float> box = boxThrough(*triangles, scene.full);
    scores.boxVolume = box.Volume();
    if (baseHeight > -1.0f) {
        scene.full *= Matrix::CreateTransfMatrix({0.0f, 0.0f, baseHeight - box.MinZ()});
        box = boxThrough(*triangles, scene.full);
        scores.boxVolume = box.Volume();
    }
    scores.height = box.MaxZ() - box.MinZ();
    if (!computeSupport) return scores;

    for (int i = 0; i < triangles->TriangleCount(); ++i) {
        scene.rectangles.push_back(rectangleOf(cornersOf(scene, i)));
    }
    sampleSupport(scene, box, search, scores);
    return scores;
}

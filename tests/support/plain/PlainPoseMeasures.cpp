#include "plain/PlainPoseMeasures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <set>
#include <tuple>

#include "TeskDataBasic/Transcendental.h"
#include "TeskMeshData/TeskMath.h"
#include "TeskSDKCommonTools/ConvexHull2.h"
#include "TeskSDKCommonTools/ConvexHull3.h"

namespace {

using Matrix = UMatrix4<float>;
using Point = UPoint3<float>;
using Vector = UVector3<double>;
using OptimizeOrient::PoseGoal;
using OptimizeOrient::PoseMeasures;

constexpr double kPi = 3.141592653589793;
constexpr float kGap = 0.2f;

struct Facet {
    std::array<Point, 3> own, turned;
    UVector3<float> normal;  ///< as placed
    float area = 0.0f;
    float up = 0.0f;  ///< the normal's part along up

    float lowest() const { return std::min({turned[0].z, turned[1].z, turned[2].z}); }
    Point centroid() const {
        return {(turned[0].x + turned[1].x + turned[2].x) / 3.0f,
                (turned[0].y + turned[1].y + turned[2].y) / 3.0f,
                (turned[0].z + turned[1].z + turned[2].z) / 3.0f};
    }
};

UBox3<float> boxThrough(const UMesh<float>& mesh, const Matrix& matrix) {
    UBox3<float> box;
    for (int i = 0; i < mesh.VertexCount(); ++i) {
        if (!mesh.Vertex(i)->IsD()) box.Extend(mesh.Vertex(i)->P() * matrix);
    }
    return box;
}

/// Placement and rotation, about the centre of the box, down to z = 0.
Matrix standing(const UMesh<float>& mesh, const Matrix& placement) {
    const Point k = boxThrough(mesh, placement).Center();
    const Matrix turn = placement * Matrix::CreateTransfMatrix({-k.x, -k.y, -k.z}) * Matrix() *
                        Matrix::CreateTransfMatrix({k.x, k.y, k.z});
    const float lift = 0.0f - boxThrough(mesh, turn).MinZ();
    return turn * Matrix::CreateTransfMatrix({0.0f, 0.0f, lift});
}

std::vector<Facet> facetsOf(const MeshKernel& kernel, const Matrix& rotation,
                            const Matrix& turned) {
    const std::shared_ptr<UMesh<float>> mesh = kernel.getMesh();
    std::vector<Facet> facets;
    for (int i = 0; i < mesh->TriangleCount(); ++i) {
        Facet f;
        std::array<Point, 3> placed;
        for (int k = 0; k < 3; ++k) {
            const auto c = static_cast<std::size_t>(k);
            f.own[c] = mesh->Triangle(i)->P(k);
            placed[c] = f.own[c] * kernel.getMatrix();
            f.turned[c] = f.own[c] * turned;
        }
        f.normal = ((placed[1] - placed[0]) * (placed[2] - placed[1])).GetNormal();
        f.area = TeskMath<float>::CalculateTriangleArea(placed[0], placed[1], placed[2]);
        f.up = f.normal.x * rotation.at(0, 2) + f.normal.y * rotation.at(1, 2) +
               f.normal.z * rotation.at(2, 2);
        facets.push_back(f);
    }
    return facets;
}

float edgeTest(const Point& a, const Point& b, const Point& p) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

/// The height at which a facet lies under or over a point, where it does.
std::optional<float> heightAt(const Facet& f, const Point& p) {
    const auto& [a, b, c] = f.turned;
    const auto outside = [](float low, float high, float value) {
        return !(low <= value && value <= high);
    };
    if (outside(std::min({a.x, b.x, c.x}), std::max({a.x, b.x, c.x}), p.x) ||
        outside(std::min({a.y, b.y, c.y}), std::max({a.y, b.y, c.y}), p.y)) {
        return std::nullopt;
    }
    const std::array<float, 3> e = {edgeTest(a, b, p), edgeTest(b, c, p), edgeTest(c, a, p)};
    const bool isOnEdge = e[0] == 0.0f || e[1] == 0.0f || e[2] == 0.0f;
    const bool isLeft = e[0] > 0.0f && e[1] > 0.0f && e[2] > 0.0f;
    const bool isRight = e[0] < 0.0f && e[1] < 0.0f && e[2] < 0.0f;
    if (!isOnEdge && !isLeft && !isRight) return std::nullopt;
    const UVector3<float> u = b - a;
    const UVector3<float> v = c - a;
    const double ux = u.x, uy = u.y, vx = v.x, vy = v.y;
    const double dx = p.x - a.x, dy = p.y - a.y;
    const double determinant = ux * vy - uy * vx;
    if (determinant == 0.0) return std::nullopt;
    const auto s = static_cast<float>((dx * vy - vx * dy) / determinant);
    const auto t = static_cast<float>((ux * dy - uy * dx) / determinant);
    return ((a + u * s) + v * t).z;
}

bool restsOnPart(const Facet& facet, const std::vector<Facet>& all) {
    const Point p = facet.centroid();
    return std::any_of(all.begin(), all.end(), [&](const Facet& below) {
        if (!(below.up > 0.0f) || !(below.lowest() < p.z)) return false;
        const std::optional<float> z = heightAt(below, p);
        return z && *z < p.z - (1e-3f + 1e-5f * p.z);
    });
}

bool touches(const Facet& f) {
    return f.up < 0.0f && std::all_of(f.turned.begin(), f.turned.end(),
                                      [](const Point& p) { return p.z <= kGap; });
}

/// Facets that have a corner at the same place belong together: grown until nothing changes.
int islandsOf(const std::vector<Facet>& contact) {
    std::vector<std::size_t> island(contact.size());
    for (std::size_t i = 0; i < island.size(); ++i) island[i] = i;
    bool isChanged = true;
    while (isChanged) {
        isChanged = false;
        std::map<std::tuple<float, float, float>, std::size_t> least;
        const auto place = [](const Point& p) { return std::tuple(p.x, p.y, p.z); };
        for (std::size_t i = 0; i < contact.size(); ++i) {
            for (const Point& p : contact[i].own) {
                const auto [at, isNew] = least.try_emplace(place(p), island[i]);
                at->second = std::min(at->second, island[i]);
            }
        }
        for (std::size_t i = 0; i < contact.size(); ++i) {
            for (const Point& p : contact[i].own) {
                if (least[place(p)] >= island[i]) continue;
                island[i] = least[place(p)];
                isChanged = true;
            }
        }
    }
    return static_cast<int>(std::set<std::size_t>(island.begin(), island.end()).size());
}

Vector wide(const Point& p) {
    return {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
}

struct Solid {
    double volume = 0.0;
    Vector centroid;  ///< in the mesh's own frame
};

/// Summed facet by facet within blocks of 4096, and then block by block.
Solid solidOf(const MeshKernel& kernel, const std::vector<Facet>& facets) {
    const UBox3<float> own = boxThrough(*kernel.getMesh(), Matrix());
    const Vector origin = wide(own.Center());
    double surface = 0.0, volume = 0.0;
    Vector surfaceMoment, volumeMoment;
    for (std::size_t first = 0; first < facets.size(); first += 4096) {
        double blockSurface = 0.0, blockVolume = 0.0;
        Vector blockSurfaceMoment, blockVolumeMoment;
        for (std::size_t i = first; i < std::min(first + 4096, facets.size()); ++i) {
            const auto area = static_cast<double>(facets[i].area);
            if (!std::isfinite(area)) continue;
            const Vector a = wide(facets[i].own[0]) - origin;
            const Vector b = wide(facets[i].own[1]) - origin;
            const Vector c = wide(facets[i].own[2]) - origin;
            const double tetrahedron = (a | (b * c)) / 6.0;
            blockSurface += area;
            blockSurfaceMoment += (a + b + c) * (area / 3.0);
            blockVolume += tetrahedron;
            blockVolumeMoment += (a + b + c) * (tetrahedron / 4.0);
        }
        surface += blockSurface;
        surfaceMoment += blockSurfaceMoment;
        volume += blockVolume;
        volumeMoment += blockVolumeMoment;
    }
    const Matrix m = kernel.getMatrix();
    const auto row = [&](int r) {
        return UVector3<float>(m.at(r, 0), m.at(r, 1), m.at(r, 2)).As<double>();
    };
    Solid solid;
    solid.volume = std::fabs(volume * (row(0) | (row(1) * row(2))));
    if (surface > 0.0) solid.centroid = origin + surfaceMoment / surface;
    const UBox3<float> box = boxThrough(*kernel.getMesh(), m);
    const double diagonal =
        (wide({box.MaxX(), box.MaxY(), box.MaxZ()}) - wide({box.MinX(), box.MinY(), box.MinZ()}))
            .GetLength();
    if (!(solid.volume > 1e-6 * surface * diagonal)) return solid;
    const Vector c = origin + volumeMoment / volume;
    const Vector low = wide({own.MinX(), own.MinY(), own.MinZ()});
    const Vector high = wide({own.MaxX(), own.MaxY(), own.MaxZ()});
    const bool isInside = low.x <= c.x && c.x <= high.x && low.y <= c.y && c.y <= high.y &&
                          low.z <= c.z && c.z <= high.z;
    if (isInside) solid.centroid = c;
    return solid;
}

float tiltMarginOf(const std::vector<Facet>& contact, const Vector& centroid) {
    std::vector<double> xy;
    for (const Facet& f : contact) {
        for (const Point& p : f.turned) {
            xy.push_back(static_cast<double>(p.x));
            xy.push_back(static_cast<double>(p.y));
        }
    }
    const gte::ConvexHull2 hull(xy, static_cast<int>(xy.size() / 2));
    const std::vector<int>& corners = hull.getIndices();
    if (corners.size() < 3) return -90.0f;
    double least = 1e300;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const auto a = static_cast<std::size_t>(corners[i]) * 2;
        const auto b = static_cast<std::size_t>(corners[(i + 1) % corners.size()]) * 2;
        const double dx = xy[b] - xy[a];
        const double dy = xy[b + 1] - xy[a + 1];
        const double inside = (dx * (centroid.y - xy[a + 1]) - dy * (centroid.x - xy[a])) /
                              std::sqrt(dx * dx + dy * dy);
        least = std::min(least, inside);
    }
    if (!std::isfinite(least) || !std::isfinite(centroid.z)) return -90.0f;
    const double angle = Tesk::angleOf(std::fabs(least), centroid.z) * (180.0 / kPi);
    return static_cast<float>(least < 0.0 ? -angle : angle);
}

Vector through(const Vector& p, const Matrix& m) {
    Vector turned;
    for (int axis = 0; axis < 3; ++axis) {
        turned[axis] =
            p.x * static_cast<double>(m.at(0, axis)) + p.y * static_cast<double>(m.at(1, axis)) +
            p.z * static_cast<double>(m.at(2, axis)) + static_cast<double>(m.at(3, axis));
    }
    return turned;
}

void measureFacets(const std::vector<Facet>& facets, float cosine, PoseMeasures& measures) {
    double overhang = 0.0, onPart = 0.0, contact = 0.0;
    for (const Facet& f : facets) {
        if (f.up < -cosine && f.centroid().z > kGap) {
            overhang += static_cast<double>(f.area);
            if (restsOnPart(f, facets)) onPart += static_cast<double>(f.area);
        }
        if (touches(f)) contact += static_cast<double>(-f.up * f.area);
    }
    measures.overhangArea = static_cast<float>(overhang);
    measures.overhangAreaOnPart = static_cast<float>(onPart);
    measures.contactArea = static_cast<float>(contact);
}

}  // namespace

PoseMeasures plainPoseMeasures(const MeshKernel& mesh, const PoseGoal& goal, const Matrix& rotation,
                               PlainSearch search) {
    MeshKernel turned = mesh;
    turned.setMatrix(mesh.getMatrix() * rotation);
    const PlainScores scores =
        plainEvaluation(plainAreas(mesh), turned, {0.0f, 0.0f, 1.0f}, goal.overhangAngleDeg,
                        /*computeSupport=*/true, /*baseHeight=*/0.0f, search);
    PoseMeasures measures;
    measures.height = scores.height;
    measures.supportVolume = scores.supportVolume;
    const Matrix full = standing(*mesh.getMesh(), turned.getMatrix());
    const UBox3<float> box = boxThrough(*mesh.getMesh(), full);
    measures.footprintX = box.MaxX() - box.MinX();
    measures.footprintY = box.MaxY() - box.MinY();
    const std::vector<Facet> facets = facetsOf(mesh, rotation, full);
    const double angleRad = static_cast<double>(goal.overhangAngleDeg) * kPi / 180.0;
    measureFacets(facets, static_cast<float>(Tesk::cosine(angleRad)), measures);
    std::vector<Facet> contact;
    std::copy_if(facets.begin(), facets.end(), std::back_inserter(contact), touches);
    measures.contactIslands = islandsOf(contact);
    const Solid solid = solidOf(mesh, facets);
    measures.tiltMarginDeg = tiltMarginOf(contact, through(solid.centroid, full));
    const Vector up =
        Vector(static_cast<double>(rotation.at(0, 2)), static_cast<double>(rotation.at(1, 2)),
               static_cast<double>(rotation.at(2, 2)))
            .GetNormal();
    measures.liesFlat = plainLargestFace(mesh, up, 0.1).has_value();
    const auto area = static_cast<double>(measures.contactArea);
    measures.stands = measures.liesFlat && measures.tiltMarginDeg >= 5.0f &&
                      area * area * area >= 0.03 * 0.03 * 0.03 * solid.volume * solid.volume;
    return measures;
}

std::optional<double> plainLargestFace(const MeshKernel& mesh, const UVector3<double>& up,
                                       double withinDeg) {
    std::vector<Point> points;
    for (int i = 0; i < mesh.getMesh()->VertexCount(); ++i) {
        const UVertex<float>& vertex = *mesh.getMesh()->Vertex(i);
        if (!vertex.IsD()) points.push_back(vertex.P() * mesh.getMatrix());
    }
    const gte::ConvexHull3 hull(points.data(), static_cast<int>(points.size()), 3);
    std::vector<Vector> normals;
    for (const auto& [a, b, c] : hull.getTriangles()) {
        const auto corner = [&](int v) {
            return wide(hull.getVertices()[static_cast<std::size_t>(v)]);
        };
        const Vector normal = (corner(b) - corner(a)) * (corner(c) - corner(a));
        if (-(normal | up) >= Tesk::cosine(withinDeg * kPi / 180.0) * normal.GetLength()) {
            normals.push_back(normal);
        }
    }
    std::stable_sort(normals.begin(), normals.end(), [](const Vector& a, const Vector& b) {
        return a.GetLength() > b.GetLength();
    });
    double largest = 0.0;
    while (!normals.empty()) {
        const Vector seed = normals.front();
        const auto isBeside = [&](const Vector& n) {
            return (n | seed) < Tesk::cosine(0.1 * kPi / 180.0) * n.GetLength() * seed.GetLength();
        };
        const auto rest = std::stable_partition(normals.begin(), normals.end(), isBeside);
        Vector sum;
        for (auto n = rest; n != normals.end(); ++n) sum += *n;
        largest = std::max(largest, sum.GetLength() * 0.5);
        normals.erase(rest, normals.end());
    }
    if (largest == 0.0) return std::nullopt;
    return largest;
}

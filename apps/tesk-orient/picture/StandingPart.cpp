#include "picture/StandingPart.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"

namespace App {

namespace {

constexpr double kGap = 0.2;     ///< mm: nearer to the plate is contact
constexpr double kCells = 36.0;  ///< columns along the longer side of the footprint

Point turned(const UPoint3<float>& p, const UMatrix4<float>& m) {
    const Point v = {static_cast<double>(p.x), static_cast<double>(p.y), static_cast<double>(p.z)};
    Point result{};
    for (int k = 0; k < 3; ++k) {
        const auto cell = [&](int row) { return static_cast<double>(m.at(row, k)); };
        result[static_cast<std::size_t>(k)] = v[0] * cell(0) + v[1] * cell(1) + v[2] * cell(2);
    }
    return result;
}

Point normalOf(const std::array<Point, 3>& c) {
    const Point u = {c[1][0] - c[0][0], c[1][1] - c[0][1], c[1][2] - c[0][2]};
    const Point v = {c[2][0] - c[0][0], c[2][1] - c[0][1], c[2][2] - c[0][2]};
    const Point n = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2],
                     u[0] * v[1] - u[1] * v[0]};
    const double length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (!(length > 0.0)) return {};
    return {n[0] / length, n[1] / length, n[2] / length};
}

/// The part's positions, set down.
std::vector<Point> setDown(const TriangleMesh& mesh, const UMatrix4<float>& rotation, Point& size) {
    std::vector<Point> points;
    points.reserve(mesh.positions.size());
    constexpr double kFar = std::numeric_limits<double>::infinity();
    Point low = {kFar, kFar, kFar}, high = {-kFar, -kFar, -kFar};
    for (const UPoint3<float>& p : mesh.positions) {
        points.push_back(turned(p, rotation));
        for (std::size_t k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], points.back()[k]);
            high[k] = std::max(high[k], points.back()[k]);
        }
    }
    for (Point& p : points) {
        for (std::size_t k = 0; k < 3; ++k) p[k] -= k == 2 ? low[k] : (low[k] + high[k]) / 2.0;
    }
    for (std::size_t k = 0; k < 3; ++k) size[k] = high[k] - low[k];
    return points;
}

struct Hit {
    double z = 0.0;
    double normalZ = 0.0;
};

/// Calls take(i, j, hit) for each line of a grid that a facet meets: (i + ½, j + ½) times the
/// pitch.
template <typename Take>
void forEachHit(const StandingFacet& facet, double pitch, const Take& take) {
    const auto& c = facet.corners;
    const auto first = [&](std::size_t k) {
        return static_cast<int>(std::ceil(std::min({c[0][k], c[1][k], c[2][k]}) / pitch - 0.5));
    };
    const auto last = [&](std::size_t k) {
        return static_cast<int>(std::floor(std::max({c[0][k], c[1][k], c[2][k]}) / pitch - 0.5));
    };
    const double ux = c[1][0] - c[0][0], uy = c[1][1] - c[0][1];
    const double vx = c[2][0] - c[0][0], vy = c[2][1] - c[0][1];
    const double whole = ux * vy - uy * vx;
    if (whole == 0.0) return;
    for (int i = first(0), iEnd = last(0); i <= iEnd; ++i) {
        for (int j = first(1), jEnd = last(1); j <= jEnd; ++j) {
            const double dx = (i + 0.5) * pitch - c[0][0], dy = (j + 0.5) * pitch - c[0][1];
            const double a = (dx * vy - dy * vx) / whole, b = (ux * dy - uy * dx) / whole;
            if (a < 0.0 || b < 0.0 || a + b > 1.0) continue;
            const double z = c[0][2] + a * (c[1][2] - c[0][2]) + b * (c[2][2] - c[0][2]);
            take(i, j, Hit{z, facet.normal[2]});
        }
    }
}

/// The height of the lowest surface over each cell of a fine grid.
class LowestSurface {
 public:
    explicit LowestSurface(const StandingPart& part)
        : m_pitch(std::max({part.size[0], part.size[1], 1e-6}) / (kSide - 2)),
          m_heights(static_cast<std::size_t>(kSide) * kSide,
                    std::numeric_limits<double>::infinity()) {
        for (const StandingFacet& facet : part.facets) {
            forEachHit(facet, m_pitch, [&](int i, int j, const Hit& hit) {
                double& height = m_heights[indexOf(i, j)];
                height = std::min(height, hit.z);
            });
        }
    }

    double heightAt(double x, double y) const {
        return m_heights[indexOf(static_cast<int>(std::floor(x / m_pitch)),
                                 static_cast<int>(std::floor(y / m_pitch)))];
    }
    double pitch() const { return m_pitch; }

 private:
    static constexpr int kSide = 768;

    static std::size_t indexOf(int i, int j) {
        const int x = std::clamp(i + kSide / 2, 0, kSide - 1);
        const int y = std::clamp(j + kSide / 2, 0, kSide - 1);
        return static_cast<std::size_t>(x) * kSide + static_cast<std::size_t>(y);
    }

    double m_pitch;
    std::vector<double> m_heights;
};

void classify(StandingPart& part, double cosine) {
    const LowestSurface lowest(part);
    for (StandingFacet& facet : part.facets) {
        const double down = -facet.normal[2];
        const auto& c = facet.corners;
        if (down > 0.0 && std::max({c[0][2], c[1][2], c[2][2]}) < kGap) {
            facet.kind = FacetKind::kContact;
            continue;
        }
        const double middle = (c[0][2] + c[1][2] + c[2][2]) / 3.0;
        if (!(down > cosine) || middle <= kGap) continue;
        facet.flatness = (down - cosine) / std::max(1.0 - cosine, 1e-6);
        const double below = lowest.heightAt((c[0][0] + c[1][0] + c[2][0]) / 3.0,
                                             (c[0][1] + c[1][1] + c[2][1]) / 3.0);
        const double slope = std::sqrt(std::max(1.0 - down * down, 0.0)) / down;
        const bool isOverPart = below < middle - 0.1 - lowest.pitch() * (1.0 + 2.0 * slope);
        facet.kind = isOverPart ? FacetKind::kOverPart : FacetKind::kOverPlate;
    }
}

void addColumns(StandingPart& part, double cosine) {
    part.pitch = std::max({part.size[0], part.size[1], 1e-6}) / kCells;
    std::map<std::pair<int, int>, std::vector<Hit>> lines;
    for (const StandingFacet& facet : part.facets) {
        forEachHit(facet, part.pitch, [&](int i, int j, const Hit& hit) {
            lines[{i, j}].push_back(hit);
        });
    }
    for (auto& [cell, hits] : lines) {
        std::stable_sort(hits.begin(), hits.end(),
                         [](const Hit& a, const Hit& b) { return a.z < b.z; });
        double low = 0.0;
        for (const Hit& hit : hits) {
            if (-hit.normalZ > cosine && hit.z - low > kGap) {
                part.columns.push_back({(cell.first + 0.5) * part.pitch,
                                        (cell.second + 0.5) * part.pitch, low, hit.z});
            }
            low = hit.z;
        }
    }
}

}  // namespace

StandingPart standingPartOf(const TriangleMesh& mesh, const UMatrix4<float>& rotation,
                            float overhangAngleDeg) {
    StandingPart part;
    const std::vector<Point> points = setDown(mesh, rotation, part.size);
    part.facets.reserve(mesh.triangles.size());
    for (const auto& triangle : mesh.triangles) {
        StandingFacet facet;
        for (std::size_t k = 0; k < 3; ++k) {
            facet.corners[k] = points[static_cast<std::size_t>(triangle[k])];
        }
        facet.normal = normalOf(facet.corners);
        part.facets.push_back(facet);
    }
    const double cosine =
        Tesk::cosine(static_cast<double>(overhangAngleDeg) * std::numbers::pi / 180.0);
    classify(part, cosine);
    addColumns(part, cosine);
    return part;
}

}  // namespace App

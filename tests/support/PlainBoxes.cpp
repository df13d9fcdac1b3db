#include "PlainBoxes.h"

#include <algorithm>
#include <cmath>

#include "PlainCalipers.h"
#include "TeskSDKCommonTools/ConvexHull2.h"

namespace Plain {

namespace {

enum class Kind { kVolume, kBaseArea, kHeight };

void project(const Hull& hull, const Vec& origin, const Vec& axis, double& low, double& high) {
    low = 0.0;
    high = 0.0;
    for (const Vec& p : hull.points) {
        const double x = (p - origin) | axis;
        if (x < low) {
            low = x;
        } else if (x > high) {
            high = x;
        }
    }
}

double length(const Candidate& c, int i) {
    return c.max[i] - c.min[i];
}

double faceVolume(const Candidate& c) {
    return (length(c, 1) / c.squaredLengths[1]) * length(c, 0) *
           (length(c, 2) / c.squaredLengths[2]);
}

double edgeVolume(const Candidate& c) {
    return (length(c, 0) / c.squaredLengths[0]) * (length(c, 1) / c.squaredLengths[1]) *
           length(c, 2);
}

float side(double range, double squaredLength) {
    return static_cast<float>(range) / static_cast<float>(std::sqrt(squaredLength));
}

void takeSmallestSide(float a, float b, float c, float& score) {
    for (const float area : {a * b, b * c, a * c}) {
        if (score == -1.0f || area < score) score = area;
    }
}

float heightOf(const Candidate& c) {
    return static_cast<float>(length(c, 2)) / std::sqrt(static_cast<float>(c.squaredLengths[2]));
}

void takeSmallestSide(const Candidate& c, float& score) {
    takeSmallestSide(side(length(c, 0), c.squaredLengths[0]),
                     side(length(c, 1), c.squaredLengths[1]),
                     side(length(c, 2), c.squaredLengths[2]), score);
}

/// Whether the frame is one at all.
bool isOrthogonal(const Candidate& c) {
    for (const double s : c.squaredLengths) {
        if (!(s > 0.0 && std::isfinite(s))) return false;
    }
    for (int i = 0; i < 3; ++i) {
        for (int j = i + 1; j < 3; ++j) {
            const double dot = c.axes[i] | c.axes[j];
            if (!(dot * dot <= 1e-18 * c.squaredLengths[i] * c.squaredLengths[j])) return false;
        }
    }
    return true;
}

bool holdsHull(const Hull& hull, const Candidate& c) {
    Vec low = hull.points[0];
    Vec high = low;
    for (const Vec& p : hull.points) {
        for (int i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], p[i]);
            high[i] = std::max(high[i], p[i]);
        }
    }
    const double diagonal = (high - low).GetLength();
    for (const Vec& p : hull.points) {
        for (int i = 0; i < 3; ++i) {
            const double slack = 1e-9 * diagonal * std::sqrt(c.squaredLengths[i]);
            const double x = (p - c.origin) | c.axes[i];
            if (!(x >= c.min[i] - slack && x <= c.max[i] + slack)) return false;
        }
    }
    return true;
}

float keyOf(Kind kind, const Candidate& c) {
    return kind == Kind::kBaseArea ? c.score : c.height;
}

bool isBetter(Kind kind, const Candidate& c, const Candidate& best) {
    if (kind == Kind::kVolume) {
        return !std::isnan(c.volume) && (best.volume == -1.0 || best.volume > c.volume);
    }
    return !std::isnan(keyOf(kind, c)) &&
           (best.volume == -1.0 || keyOf(kind, best) > keyOf(kind, c));
}

/// Takes a candidate's ranges and measures from all hull vertices.
void takeAll(const Hull& hull, Kind kind, bool isEdgeBox, Candidate& c) {
    for (int i = 0; i < 3; ++i) project(hull, c.origin, c.axes[i], c.min[i], c.max[i]);
    c.volume = isEdgeBox ? edgeVolume(c) : faceVolume(c);
    c.area = length(c, 0) * length(c, 1) / c.squaredLengths[1];
    if (kind == Kind::kHeight) c.height = heightOf(c);
    if (kind == Kind::kBaseArea) {
        c.score = -1.0f;
        takeSmallestSide(c, c.score);
    }
}

void offer(const Hull& hull, Kind kind, bool isEdgeBox, Candidate c, Candidate& best) {
    if (!isBetter(kind, c, best) || !isOrthogonal(c)) return;
    if (!holdsHull(hull, c)) {
        takeAll(hull, kind, isEdgeBox, c);
        if (!isBetter(kind, c, best)) return;
    }
    best = c;
}

Candidate overRect(const Hull& hull, const Rect& rect, const Vec& n,
                   const std::vector<int>& outline) {
    const auto support = [&](int k) {
        return hull
            .points[static_cast<std::size_t>(outline[static_cast<std::size_t>(rect.support[k])])];
    };
    Candidate c;
    c.origin = support(0);
    c.axes[0] = rect.r0;
    c.axes[1] = rect.r1;
    c.axes[2] = n;
    c.squaredLengths[0] = rect.q0;
    c.squaredLengths[1] = rect.q1;
    c.squaredLengths[2] = n | n;
    c.min[0] = (support(3) - c.origin) | c.axes[0];
    c.max[0] = (support(1) - c.origin) | c.axes[0];
    c.min[1] = 0.0;
    c.max[1] = (support(2) - c.origin) | c.axes[1];
    project(hull, c.origin, n, c.min[2], c.max[2]);
    c.volume = faceVolume(c);
    c.area = rect.area;
    return c;
}

Candidate leastBaseOver(const Hull& hull, const Vec& n, const std::vector<int>& outline) {
    const std::vector<Rect> rects = allRects(hull, n, outline);
    const auto at = [&](int position) {
        return hull.points[static_cast<std::size_t>(outline[static_cast<std::size_t>(position)])];
    };
    double low;
    double high;
    project(hull, at(rects[0].support[0]), n, low, high);
    const float height = side(high - low, n | n);
    Rect best;
    float bestScore = -1.0f;
    for (std::size_t i = 0; i < rects.size(); ++i) {
        const Rect& rect = rects[i];
        const double width = rect.r0 | (at(rect.support[1]) - at(rect.support[3]));
        const double depth = rect.r1 | (at(rect.support[2]) - at(rect.support[0]));
        float score = -1.0f;
        takeSmallestSide(side(width, rect.q0), side(depth, rect.q1), height, score);
        if (i == 0 || bestScore > score) {
            best = rect;
            bestScore = score;
        }
    }
    Candidate c = overRect(hull, best, n, outline);
    c.score = bestScore;
    takeSmallestSide(c, c.score);
    return c;
}

void searchRange(const Hull& hull, Kind kind, std::size_t first, std::size_t last,
                 Candidate& best) {
    for (std::size_t face = first; face < last; ++face) {
        const Vec n = normalOf(hull, hull.triangles[face]);
        std::vector<int> outline = outlineAlong(hull, n);
        removeCollinear(hull, n, outline);
        if (outline.size() < 3) continue;
        Candidate c;
        if (kind == Kind::kBaseArea) {
            c = leastBaseOver(hull, n, outline);
        } else {
            c = overRect(hull, minRect(hull, n, outline), n, outline);
            if (kind == Kind::kHeight) c.height = heightOf(c);
        }
        offer(hull, kind, false, c, best);
    }
}

Candidate searchDirections(const Hull& hull, Kind kind, int threads) {
    const std::size_t faces = hull.triangles.size();
    const auto count = static_cast<std::size_t>(threads);
    Candidate best;
    if (count < 2 || faces < count) {
        searchRange(hull, kind, 0, faces, best);
        return best;
    }
    const std::size_t share = faces / count;
    for (std::size_t t = 0; t < count; ++t) {
        Candidate own;
        searchRange(hull, kind, t * share, t + 1 == count ? faces : (t + 1) * share, own);
        if (own.volume != -1.0 && isBetter(kind, own, best)) best = own;
    }
    return best;
}

}  // namespace

Candidate searchFaces(const Hull& hull, int threads) {
    return searchDirections(hull, Kind::kVolume, threads);
}

Candidate searchBaseArea(const Hull& hull, int threads) {
    return searchDirections(hull, Kind::kBaseArea, threads);
}

Candidate searchHeight(const Hull& hull, int threads) {
    return searchDirections(hull, Kind::kHeight, threads);
}

Candidate searchEdges(const Hull& hull) {
    std::vector<Vec> d;
    for (const gte::HullEdge& edge : hull.edges) {
        d.push_back(hull.points[static_cast<std::size_t>(edge.b)] -
                    hull.points[static_cast<std::size_t>(edge.a)]);
    }
    Candidate best;
    for (std::size_t i = 0; i < d.size(); ++i) {
        Vec w = d[i];
        for (std::size_t j = i + 1; j < d.size(); ++j) {
            if ((d[j] | w) != 0.0) continue;
            for (std::size_t k = j + 1; k < d.size(); ++k) {
                if ((d[k] | d[j]) != 0.0 || (d[k] | w) != 0.0) continue;
                w = d[k] * d[j];
                Candidate c;
                c.origin = hull.points[static_cast<std::size_t>(hull.triangles[0][0])];
                c.axes[0] = d[k];
                c.axes[1] = d[j];
                c.axes[2] = w;
                c.squaredLengths[0] = d[k] | d[k];
                c.squaredLengths[1] = d[j] | d[j];
                c.squaredLengths[2] = c.squaredLengths[0] * c.squaredLengths[1];
                for (int m = 0; m < 3; ++m) project(hull, c.origin, c.axes[m], c.min[m], c.max[m]);
                c.volume = edgeVolume(c);
                if (isBetter(Kind::kVolume, c, best) && (d[k] | (d[j] * w)) < 0.0) {
                    w = {-w.x, -w.y, -w.z};
                    c.axes[2] = w;
                }
                offer(hull, Kind::kVolume, true, c, best);
            }
        }
    }
    return best;
}

Candidate searchVolume(const Hull& hull, int threads) {
    Candidate faces = searchFaces(hull, threads);
    const Candidate edges = searchEdges(hull);
    if (edges.volume != -1.0 && (faces.volume == -1.0 || faces.volume > edges.volume)) {
        faces = edges;
    }
    return faces;
}

std::optional<Candidate> searchAroundAxis(const gte::ConvexHull3& hull,
                                          const UVector3<float>& axis) {
    const UVector3<float> u = axis.GetNormal();
    const UVector3<float> e1 = (u * UVector3<float>(0, 0, 1)).GetNormal();
    const UVector3<float> e2 = e1 * u;
    const bool isX = axis == UVector3<float>(1, 0, 0);
    const bool isY = axis == UVector3<float>(0, 1, 0);
    const bool isZ = axis == UVector3<float>(0, 0, 1);
    std::vector<double> flat;
    for (const UPoint3<float>& p : hull.getVertices()) {
        float x;
        float y;
        if (isX) {
            x = p.y;
            y = p.z;
        } else if (isY) {
            x = p.x;
            y = p.z;
        } else if (isZ) {
            x = p.x;
            y = p.y;
        } else {
            const UVector3<float> v(p.x, p.y, p.z);
            const UVector3<float> q = v - u * (v | u);
            x = q | e1;
            y = q | e2;
        }
        flat.push_back(static_cast<double>(x));
        flat.push_back(static_cast<double>(y));
    }
    std::vector<int> polygon =
        gte::ConvexHull2(flat, static_cast<int>(hull.getVertices().size())).getIndices();
    if (polygon.size() < 3) return std::nullopt;
    if (!isX && !isZ) std::reverse(polygon.begin(), polygon.end());
    const Hull plain(hull);
    const Vec n = axis.As<double>();
    const Candidate c = overRect(plain, minRect(plain, n, polygon), n, polygon);
    Candidate best;
    offer(plain, Kind::kVolume, false, c, best);
    if (best.volume == -1.0) return std::nullopt;
    return best;
}

OrientedBox3 toBox(const Candidate& c) {
    OrientedBox3 box;
    Vec center = c.origin;
    for (int i = 0; i < 3; ++i) {
        const double t = (c.min[i] + c.max[i]) * 0.5 / c.squaredLengths[i];
        center = center + c.axes[i] * t;
        const double half = (c.max[i] - c.min[i]) * 0.5;
        box.extent[i] = std::sqrt(static_cast<float>(half * half / c.squaredLengths[i]));
        const Vec& a = c.axes[i];
        const double scale = 1.0 / std::max({std::fabs(a.x), std::fabs(a.y), std::fabs(a.z)});
        box.axis[i] = {static_cast<float>(a.x * scale), static_cast<float>(a.y * scale),
                       static_cast<float>(a.z * scale)};
        box.axis[i].Normalize();
    }
    box.center = {static_cast<float>(center.x), static_cast<float>(center.y),
                  static_cast<float>(center.z)};
    return box;
}

}  // namespace Plain

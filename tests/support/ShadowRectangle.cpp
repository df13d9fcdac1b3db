#include "ShadowRectangle.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

using Real = long double;
using Vector = UVector3<Real>;

struct Corner {
    Real x;
    Real y;
};

/// UVector3 measures lengths in double.
Vector normalised(const Vector& v) {
    return v / std::sqrt(v | v);
}

Vector anyAcross(const Vector& v) {
    const bool isAlongX = std::fabs(v.x) > std::fabs(v.y) && std::fabs(v.x) > std::fabs(v.z);
    return normalised(v * (isAlongX ? Vector(0, 1, 0) : Vector(1, 0, 0)));
}

Real turnOf(const Corner& a, const Corner& b, const Corner& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// The outline's corners by Andrew's chains.
std::vector<Corner> outlineOf(std::vector<Corner> points) {
    std::sort(points.begin(), points.end(),
              [](const Corner& a, const Corner& b) { return a.x != b.x ? a.x < b.x : a.y < b.y; });
    std::vector<Corner> outline;
    for (int chain = 0; chain < 2; ++chain) {
        const std::size_t first = outline.size();
        for (const Corner& p : points) {
            while (outline.size() >= first + 2 &&
                   turnOf(outline[outline.size() - 2], outline.back(), p) <= 0) {
                outline.pop_back();
            }
            outline.push_back(p);
        }
        outline.pop_back();
        std::reverse(points.begin(), points.end());
    }
    if (outline.empty()) outline.push_back(points.front());
    return outline;
}

Real widthAlong(const std::vector<Corner>& outline, Real x, Real y) {
    Real low = outline[0].x * x + outline[0].y * y;
    Real high = low;
    for (const Corner& c : outline) {
        low = std::min(low, c.x * x + c.y * y);
        high = std::max(high, c.x * x + c.y * y);
    }
    return high - low;
}

}  // namespace

ShadowRectangle leastShadowRectangle(const gte::ConvexHull3& hull, const UVector3<float>& axis) {
    const Vector unit = normalised(axis.As<Real>());
    const Vector e1 = anyAcross(unit);
    const Vector e2 = unit * e1;
    const UPoint3<float>& origin = hull.getVertices().front();
    std::vector<Corner> points;
    Real low = 0;
    Real high = 0;
    for (const UPoint3<float>& p : hull.getVertices()) {
        const Vector d = (p - UPoint3<float>()).As<Real>() - (origin - UPoint3<float>()).As<Real>();
        points.push_back({d | e1, d | e2});
        low = std::min(low, d | unit);
        high = std::max(high, d | unit);
    }
    const std::vector<Corner> outline = outlineOf(points);
    ShadowRectangle least;
    least.depth = high - low;
    bool isFirst = true;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const Corner& a = outline[i];
        const Corner& b = outline[(i + 1) % outline.size()];
        const Real length = std::hypot(b.x - a.x, b.y - a.y);
        if (!(length > 0)) continue;
        const Real x = (b.x - a.x) / length;
        const Real y = (b.y - a.y) / length;
        const Real side = widthAlong(outline, x, y);
        const Real area = side * widthAlong(outline, -y, x);
        if (isFirst || area < least.area) least.area = area;
        isFirst = false;
        least.extent = std::max({least.extent, side, widthAlong(outline, -y, x)});
    }
    return least;
}

#include "triangulate/PolygonCutter.h"

#include <cmath>

namespace Tesk::files {

namespace {

constexpr std::size_t kTestsPerCorner = 1024;
constexpr std::size_t kNone = SIZE_MAX;

struct Vector {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

Vector cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector between(const PartPoint& from, const PartPoint& to) {
    return {static_cast<double>(to.x) - static_cast<double>(from.x),
            static_cast<double>(to.y) - static_cast<double>(from.y),
            static_cast<double>(to.z) - static_cast<double>(from.z)};
}

Vector unit(const Vector& v) {
    const double length = std::sqrt(dot(v, v));
    return {v.x / length, v.y / length, v.z / length};
}

/// Perpendicular to a normal, along an axis where the normal is along another one.
Vector anyAcross(const Vector& normal) {
    const double x = std::fabs(normal.x);
    const double y = std::fabs(normal.y);
    const double z = std::fabs(normal.z);
    if (z >= x && z >= y) return cross({0.0, 1.0, 0.0}, normal);
    return x >= y ? cross({0.0, 0.0, 1.0}, normal) : cross({1.0, 0.0, 0.0}, normal);
}

}  // namespace

double PolygonCutter::turn(const Point& a, const Point& b, const Point& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

bool PolygonCutter::isIn(const Point& p, const Point& a, const Point& b, const Point& c) {
    return turn(a, b, p) >= 0.0 && turn(b, c, p) >= 0.0 && turn(c, a, p) >= 0.0;
}

void PolygonCutter::project(std::span<const std::int32_t> corners,
                            std::span<const PartPoint> positions) {
    const auto at = [&](std::size_t i) -> const PartPoint& {
        return positions[static_cast<std::size_t>(corners[i])];
    };
    // From the first corner, so that a polygon far from the origin loses no digits.
    Vector normal;
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        const Vector n = cross(between(at(0), at(i)), between(at(0), at(i + 1)));
        normal = {normal.x + n.x, normal.y + n.y, normal.z + n.z};
    }
    const Vector n = unit(normal);
    const Vector u = anyAcross(n);
    const Vector v = cross(n, u);
    m_points.clear();
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Vector p = between(at(0), at(i));
        m_points.push_back({dot(p, u), dot(p, v)});
    }
}

/// Every corner turns left, and all of them together turn once round.
bool PolygonCutter::isStrictlyConvex() const {
    const std::size_t count = m_points.size();
    int timesRoundToLeft = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const Point& a = m_points[i];
        const Point& b = m_points[(i + 1) % count];
        const Point& c = m_points[(i + 2) % count];
        // Written so that a polygon without area, all of whose turns are NaN, is not convex.
        if (!(turn(a, b, c) > 0.0)) return false;
        // Round once, the steps' x goes from right to left once.
        timesRoundToLeft +=
            (b.x > a.x || (b.x == a.x && b.y < a.y)) && (c.x < b.x || (c.x == b.x && c.y > b.y));
    }
    return timesRoundToLeft == 1;
}

double PolygonCutter::turnAt(std::size_t corner) const {
    return turn(m_points[m_before[corner]], m_points[corner], m_points[m_after[corner]]);
}

void PolygonCutter::link(std::size_t count) {
    m_before.resize(count);
    m_after.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        m_before[i] = i == 0 ? count - 1 : i - 1;
        m_after[i] = i + 1 == count ? 0 : i + 1;
    }
    m_reflex.clear();
    m_isReflex.assign(count, 0);
    for (std::size_t i = 0; i < count; ++i) {
        if (turnAt(i) > 0.0) continue;
        m_isReflex[i] = 1;
        m_reflex.push_back(i);
    }
    m_testsLeft = count * kTestsPerCorner;
}

/// A corner that turns left and whose triangle holds no other one. Only those that do not turn left
/// can be in there alone.
bool PolygonCutter::isEar(std::size_t corner) {
    if (m_isReflex[corner] != 0) return false;
    const Point& a = m_points[m_before[corner]];
    const Point& b = m_points[corner];
    const Point& c = m_points[m_after[corner]];
    for (std::size_t i = 0; i < m_reflex.size();) {
        const std::size_t other = m_reflex[i];
        if (m_isReflex[other] == 0) {
            m_reflex[i] = m_reflex.back();
            m_reflex.pop_back();
            continue;
        }
        if (!takeTest()) return true;
        // A hole is joined to the outline by an edge there and back, so that corners coincide.
        const Point& p = m_points[other];
        if (p != a && p != b && p != c && isIn(p, a, b, c)) return false;
        ++i;
    }
    return true;
}

bool PolygonCutter::takeTest() {
    std::size_t& tests = m_testsLeft > 0 ? m_testsLeft : m_spareTests;
    if (tests == 0) return false;
    --tests;
    return true;
}

std::size_t PolygonCutter::nextEar(std::size_t from, std::size_t left) {
    std::size_t corner = from;
    for (std::size_t i = 0; i < left; ++i, corner = m_after[corner]) {
        if (!takeTest() || isEar(corner)) return corner;
    }
    return kNone;
}

/// For a polygon that crosses itself: a corner that is straight, or else one that turns left.
std::size_t PolygonCutter::leastBad(std::size_t from) {
    std::size_t corner = from;
    std::size_t best = from;
    bool isFound = false;
    do {
        const double turned = turnAt(corner);
        if (turned == 0.0 || !takeTest()) return corner;
        if (turned > 0.0 && !isFound) {
            best = corner;
            isFound = true;
        }
        corner = m_after[corner];
    } while (corner != from);
    return best;
}

void PolygonCutter::clip(std::size_t corner) {
    const std::size_t before = m_before[corner];
    const std::size_t after = m_after[corner];
    m_after[before] = after;
    m_before[after] = before;
    m_isReflex[corner] = 0;
    for (const std::size_t neighbour : {before, after}) {
        const char isReflex = turnAt(neighbour) > 0.0 ? 0 : 1;
        // Of a polygon that crosses itself a corner may become reflex again.
        if (isReflex != 0 && m_isReflex[neighbour] == 0) m_reflex.push_back(neighbour);
        m_isReflex[neighbour] = isReflex;
    }
}

void PolygonCutter::clipEars(std::span<const std::int32_t> corners,
                             std::vector<Triangle>& triangles) {
    link(corners.size());
    std::size_t from = 0;
    for (std::size_t left = corners.size(); left > 3; --left) {
        std::size_t corner = nextEar(from, left);
        if (corner == kNone) corner = leastBad(from);
        triangles.push_back({corners[m_before[corner]], corners[corner], corners[m_after[corner]]});
        // Going on two corners further keeps the triangles from all meeting in one corner.
        from = m_after[m_after[corner]];
        clip(corner);
    }
    triangles.push_back({corners[m_before[from]], corners[from], corners[m_after[from]]});
}

void PolygonCutter::cut(std::span<const std::int32_t> corners, std::span<const PartPoint> positions,
                        std::vector<Triangle>& triangles) {
    if (corners.size() == 3) {
        triangles.push_back({corners[0], corners[1], corners[2]});
        return;
    }
    project(corners, positions);
    if (!isStrictlyConvex()) {
        clipEars(corners, triangles);
        return;
    }
    for (std::size_t i = 1; i + 1 < corners.size(); ++i) {
        triangles.push_back({corners[0], corners[i], corners[i + 1]});
    }
}

}  // namespace Tesk::files

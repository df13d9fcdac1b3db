#include <cmath>

#include "PlainBoxes.h"
#include "PlainCalipers.h"

namespace Plain {

Hull::Hull(const gte::ConvexHull3& hull)
    : triangles(hull.getTriangles()), edges(hull.getHullEdges()) {
    for (const UPoint3<float>& p : hull.getVertices()) {
        points.emplace_back(static_cast<double>(p.x), static_cast<double>(p.y),
                            static_cast<double>(p.z));
    }
}

namespace {

const Vec& pointOf(const Hull& hull, const std::vector<int>& outline, int position) {
    return hull.points[static_cast<std::size_t>(outline[static_cast<std::size_t>(position)])];
}

}  // namespace

Vec normalOf(const Hull& hull, const std::array<int, 3>& triangle) {
    const auto p = [&](int k) {
        return hull.points[static_cast<std::size_t>(triangle[static_cast<std::size_t>(k)])];
    };
    return (p(2) - p(0)) * (p(1) - p(0));
}

std::vector<int> outlineAlong(const Hull& hull, const Vec& direction) {
    std::vector<double> dots;
    for (const auto& triangle : hull.triangles)
        dots.push_back(normalOf(hull, triangle) | direction);
    std::vector<int> next(hull.points.size(), 0);
    int start = -1;
    for (const gte::HullEdge& edge : hull.edges) {
        const double s0 = dots[static_cast<std::size_t>(edge.f0)];
        const double s1 = dots[static_cast<std::size_t>(edge.f1)];
        int facingAway;
        if (s0 < 0.0 && s1 >= 0.0) {
            facingAway = edge.f0;
        } else if (s1 < 0.0 && s0 >= 0.0) {
            facingAway = edge.f1;
        } else {
            continue;
        }
        const std::array<int, 3>& t = hull.triangles[static_cast<std::size_t>(facingAway)];
        int k = 0;
        while (k < 3 && t[static_cast<std::size_t>(k)] != edge.a) ++k;
        if (k == 3) continue;
        const int before = t[static_cast<std::size_t>((k + 2) % 3)];
        if (before == edge.b) {
            next[static_cast<std::size_t>(edge.b)] = edge.a;
        } else {
            next[static_cast<std::size_t>(edge.a)] = edge.b;
        }
        start = edge.a;
    }
    std::vector<int> outline;
    if (start < 0) return outline;
    int v = start;
    do {
        outline.push_back(v);
        v = next[static_cast<std::size_t>(v)];
    } while (v != start && outline.size() < hull.points.size());
    return outline;
}

void removeCollinear(const Hull& hull, const Vec& direction, std::vector<int>& outline) {
    if (outline.size() > 1 && outline.front() == outline.back()) outline.pop_back();
    const std::vector<int> copy = outline;
    outline.clear();
    const int m = static_cast<int>(copy.size());
    if (m == 0) return;
    Vec before = pointOf(hull, copy, 0) - pointOf(hull, copy, m - 1);
    for (int i0 = 0; i0 < m; ++i0) {
        const int i1 = i0 + 1 < m ? i0 + 1 : 0;
        const Vec after = pointOf(hull, copy, i1) - pointOf(hull, copy, i0);
        const double t = before | (after * direction);
        if (t != 0.0) outline.push_back(copy[static_cast<std::size_t>(i0)]);
        before = after;
    }
    if (!outline.empty() && outline.front() == outline.back()) outline.pop_back();
}

Rect edgeRect(const Hull& hull, int i0, int i1, const Vec& n, const std::vector<int>& outline) {
    const Vec edge = pointOf(hull, outline, i1) - pointOf(hull, outline, i0);
    Rect rect;
    rect.r1 = n * edge;
    rect.r0 = rect.r1 * n;
    for (int& support : rect.support) support = i1;
    rect.q0 = rect.r0 | rect.r0;
    rect.q1 = rect.r1 | rect.r1;
    double s[4][2] = {};
    const Vec origin = pointOf(hull, outline, i1);
    for (int j = 0; j < static_cast<int>(outline.size()); ++j) {
        const Vec d = pointOf(hull, outline, j) - origin;
        const double x = rect.r0 | d;
        const double y = rect.r1 | d;
        const auto take = [&](int side) {
            rect.support[side] = j;
            s[side][0] = x;
            s[side][1] = y;
        };
        if (x > s[1][0] || (x == s[1][0] && y > s[1][1])) take(1);
        if (y > s[2][1] || (y == s[2][1] && x < s[2][0])) take(2);
        if (x < s[3][0] || (x == s[3][0] && y < s[3][1])) take(3);
    }
    rect.area = (s[1][0] - s[3][0]) * s[2][1] / rect.q1;
    return rect;
}

bool turnOnce(const Hull& hull, const Vec& n, const std::vector<int>& outline,
              std::vector<bool>& visited, Rect& rect) {
    const int m = static_cast<int>(outline.size());
    struct Entry {
        double sinSq;
        int side;
    };
    std::vector<Entry> entries;
    const int pairs[4][2] = {{3, 0}, {0, 1}, {1, 2}, {2, 3}};
    for (const auto& [k0, k1] : pairs) {
        if (rect.support[k0] == rect.support[k1]) continue;
        const bool isFirst = (k0 & 1) == 0;
        Vec d = isFirst ? rect.r0 : rect.r1;
        if (k0 >= 2) d = {-d.x, -d.y, -d.z};
        const int j0 = rect.support[k0];
        const int j1 = j0 + 1 < m ? j0 + 1 : 0;
        Vec e = pointOf(hull, outline, j1) - pointOf(hull, outline, j0);
        e = (n * e) * n;
        const Vec cross = d * e;
        entries.push_back({(cross | cross) / ((isFirst ? rect.q0 : rect.q1) * (e | e)), k0});
    }
    if (entries.empty()) return false;
    // The sorting networks of two, three and four, which exchange on a strict difference only.
    std::vector<std::array<std::size_t, 2>> network;
    if (entries.size() == 2) network = {{0, 1}};
    if (entries.size() == 3) network = {{0, 1}, {0, 2}, {1, 2}};
    if (entries.size() == 4) network = {{0, 1}, {2, 3}, {0, 2}, {1, 3}, {1, 2}};
    for (const auto& [i, j] : network) {
        if (entries[i].sinSq > entries[j].sinSq) std::swap(entries[i], entries[j]);
    }
    const Entry least = entries[0];
    for (const Entry& entry : entries) {
        if (!(entry.sinSq == least.sinSq)) break;
        rect.support[entry.side] =
            rect.support[entry.side] + 1 < m ? rect.support[entry.side] + 1 : 0;
    }
    const int bottom = rect.support[least.side];
    if (visited[static_cast<std::size_t>(bottom)]) return false;
    visited[static_cast<std::size_t>(bottom)] = true;
    const int old[4] = {rect.support[0], rect.support[1], rect.support[2], rect.support[3]};
    for (int k = 0; k < 4; ++k) rect.support[k] = old[(least.side + k) % 4];
    const int j1 = rect.support[0];
    const Vec e = pointOf(hull, outline, j1) - pointOf(hull, outline, j1 - 1);
    rect.r1 = n * e;
    rect.r0 = rect.r1 * n;
    rect.q0 = rect.r0 | rect.r0;
    rect.q1 = rect.r1 | rect.r1;
    const Vec width =
        pointOf(hull, outline, rect.support[1]) - pointOf(hull, outline, rect.support[3]);
    const Vec depth =
        pointOf(hull, outline, rect.support[2]) - pointOf(hull, outline, rect.support[0]);
    rect.area = (rect.r0 | width) * (rect.r1 | depth) / rect.q1;
    return true;
}

std::vector<Rect> allRects(const Hull& hull, const Vec& n, const std::vector<int>& outline) {
    const int m = static_cast<int>(outline.size());
    std::vector<bool> visited(outline.size(), false);
    Rect rect = edgeRect(hull, m - 1, 0, n, outline);
    visited[static_cast<std::size_t>(rect.support[0])] = true;
    std::vector<Rect> rects = {rect};
    for (int i = 0; i < m; ++i) {
        if (!turnOnce(hull, n, outline, visited, rect)) break;
        rects.push_back(rect);
    }
    return rects;
}

Rect minRect(const Hull& hull, const Vec& direction, const std::vector<int>& outline) {
    const std::vector<Rect> rects = allRects(hull, direction, outline);
    Rect best = rects[0];
    for (const Rect& rect : rects) {
        if (best.area > rect.area) best = rect;
    }
    return best;
}

}  // namespace Plain

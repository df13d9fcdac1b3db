#include "plain/PlainCaliper.h"

#include <algorithm>
#include <utility>

namespace {

int after(int position, const std::vector<int>& outline) {
    return position + 1 == static_cast<int>(outline.size()) ? 0 : position + 1;
}

void layOnEdge(const UVector3<double>& n, const UVector3<double>& e, PlainRect& rect) {
    rect.r1 = n * e;
    rect.r0 = rect.r1 * n;
    rect.q = {rect.r0 | rect.r0, rect.r1 | rect.r1};
}

struct Planar {
    double x = 0.0;
    double y = 0.0;
};

}  // namespace

void plainRemoveCollinear(const PlainPoints& points, const UVector3<double>& n,
                          std::vector<int>& outline) {
    if (outline.size() > 1 && outline.back() == outline.front()) outline.pop_back();
    if (outline.empty()) return;
    const std::vector<int> all = outline;
    outline.clear();
    const int m = static_cast<int>(all.size());
    UVector3<double> previous = points[all[0]] - points[all[m - 1]];
    for (int i0 = 0; i0 < m; ++i0) {
        const int i1 = i0 + 1 == m ? 0 : i0 + 1;
        const UVector3<double> next = points[all[i1]] - points[all[i0]];
        const double t = previous | (next * n);
        if (t != 0.0) outline.push_back(all[i0]);
        previous = next;
    }
    if (!outline.empty() && outline.back() == outline.front()) outline.pop_back();
}

void plainRemoveSteep(const PlainPoints& points, const UVector3<double>& n,
                      std::vector<int>& outline) {
    std::vector<int> kept;
    for (int i = 0; i < static_cast<int>(outline.size()); ++i) {
        const UVector3<double> e = points[outline[after(i, outline)]] - points[outline[i]];
        const UVector3<double> r0 = (n * e) * n;
        const double nn = n | n;
        if ((r0 | r0) > 1e-7 * 1e-7 * ((e | e) * nn * nn)) kept.push_back(outline[i]);
    }
    outline = kept;
}

void plainTidyOutline(const PlainPoints& points, const UVector3<double>& n,
                      std::vector<int>& outline) {
    const std::vector<int> all = outline;
    plainRemoveCollinear(points, n, outline);
    if (outline.size() > 2) return;
    outline = all;
    plainRemoveSteep(points, n, outline);
    plainRemoveCollinear(points, n, outline);
}

PlainRect plainEdgeRect(const PlainPoints& points, const UVector3<double>& n,
                        const std::vector<int>& outline, int i0, int i1) {
    PlainRect rect;
    layOnEdge(n, points[outline[i1]] - points[outline[i0]], rect);
    rect.support = {i1, i1, i1, i1};
    Planar right;
    Planar top;
    Planar left;
    const UVector3<double> origin = points[outline[i1]];
    for (int j = 0; j < static_cast<int>(outline.size()); ++j) {
        const UVector3<double> d = points[outline[j]] - origin;
        const Planar v = {rect.r0 | d, rect.r1 | d};
        if (v.x > right.x || (v.x == right.x && v.y > right.y)) {
            rect.support[1] = j;
            right = v;
        }
        if (v.y > top.y || (v.y == top.y && v.x < top.x)) {
            rect.support[2] = j;
            top = v;
        }
        if (v.x < left.x || (v.x == left.x && v.y < left.y)) {
            rect.support[3] = j;
            left = v;
        }
    }
    rect.area = (right.x - left.x) * top.y / rect.q[1];
    return rect;
}

PlainAngles plainAngles(const PlainPoints& points, const UVector3<double>& n,
                        const std::vector<int>& outline, const PlainRect& rect) {
    PlainAngles angles;
    const std::array<std::pair<int, int>, 4> sides = {{{3, 0}, {0, 1}, {1, 2}, {2, 3}}};
    for (const auto& [k0, k1] : sides) {
        if (rect.support[k0] == rect.support[k1]) continue;
        UVector3<double> d = (k0 & 1) == 0 ? rect.r0 : rect.r1;
        if (k0 == 2 || k0 == 3) d = UVector3<double>(-d.x, -d.y, -d.z);
        const int j0 = rect.support[k0];
        const int j1 = after(j0, outline);
        UVector3<double> e = points[outline[j1]] - points[outline[j0]];
        e = (n * e) * n;
        const UVector3<double> cross = d * e;
        angles.entries[angles.count] = {(cross | cross) / (rect.q[k0 & 1] * (e | e)), k0};
        ++angles.count;
    }
    return angles;
}

std::array<int, 4> plainSortAngles(const PlainAngles& angles) {
    std::array<int, 4> order = {0, 1, 2, 3};
    const auto sortPair = [&](int first, int second) {
        if (angles.entries[order[first]].sinSq > angles.entries[order[second]].sinSq) {
            std::swap(order[first], order[second]);
        }
    };
    if (angles.count == 2) {
        sortPair(0, 1);
    } else if (angles.count == 3) {
        sortPair(0, 1);
        sortPair(0, 2);
        sortPair(1, 2);
    } else if (angles.count == 4) {
        sortPair(0, 1);
        sortPair(2, 3);
        sortPair(0, 2);
        sortPair(1, 3);
        sortPair(1, 2);
    }
    return order;
}

bool plainUpdateSupport(const PlainPoints& points, const UVector3<double>& n,
                        const std::vector<int>& outline, const PlainAngles& angles,
                        const std::array<int, 4>& order, std::vector<bool>& visited,
                        PlainRect& rect) {
    const PlainAngle least = angles.entries[order[0]];
    for (int k = 0; k < angles.count; ++k) {
        const PlainAngle& angle = angles.entries[order[k]];
        if (!(angle.sinSq == least.sinSq)) break;
        rect.support[angle.side] = after(rect.support[angle.side], outline);
    }
    const int bottom = rect.support[least.side];
    if (visited[bottom]) return false;
    visited[bottom] = true;
    const std::array<int, 4> old = rect.support;
    for (int k = 0; k < 4; ++k) rect.support[k] = old[(least.side + k) % 4];
    const int j1 = rect.support[0];
    const int j0 = j1 - 1;
    layOnEdge(n, points[outline[j1]] - points[outline[j0]], rect);
    const auto at = [&](int side) { return points[outline[rect.support[side]]]; };
    rect.area = (rect.r0 | (at(1) - at(3))) * (rect.r1 | (at(2) - at(0))) / rect.q[1];
    return true;
}

std::vector<PlainRect> plainRun(const PlainPoints& points, const UVector3<double>& n,
                                const std::vector<int>& outline) {
    const int m = static_cast<int>(outline.size());
    std::vector<bool> visited(m, false);
    PlainRect rect = plainEdgeRect(points, n, outline, m - 1, 0);
    visited[rect.support[0]] = true;
    std::vector<PlainRect> run = {rect};
    for (int i = 0; i < m; ++i) {
        const PlainAngles angles = plainAngles(points, n, outline, rect);
        if (angles.count == 0) break;
        const std::array<int, 4> order = plainSortAngles(angles);
        if (!plainUpdateSupport(points, n, outline, angles, order, visited, rect)) break;
        run.push_back(rect);
    }
    return run;
}

PlainRect plainMinRect(const PlainPoints& points, const UVector3<double>& n,
                       const std::vector<int>& outline) {
    const std::vector<PlainRect> run = plainRun(points, n, outline);
    PlainRect best = run[0];
    for (const PlainRect& rect : run) {
        if (best.area > rect.area) best = rect;
    }
    return best;
}

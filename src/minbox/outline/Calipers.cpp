#include "minbox/outline/Calipers.h"

#include <limits>
#include <utility>

namespace Tesk::minbox {

std::array<int, 4> sortAngles(const SideAngles& entries, int count) {
    constexpr int kPairs[5][2] = {{0, 1}, {2, 3}, {0, 2}, {1, 3}, {1, 2}};
    TESK_ASSERT(count >= 0 && count <= 4);
    std::array<int, 4> order = {0, 1, 2, 3};
    for (const auto& [i, j] : kPairs) {
        int& first = order[static_cast<std::size_t>(i)];
        int& second = order[static_cast<std::size_t>(j)];
        const auto sinSq = [&](int k) { return entries[static_cast<std::size_t>(k)].sinSq; };
        if (j < count && sinSq(first) > sinSq(second)) std::swap(first, second);
    }
    return order;
}

Calipers::Calipers(const HullPoints& points) : m_points(points) {
    const auto most = static_cast<std::size_t>(points.count());
    m_corners.reserve(most);
    m_edges.reserve(most + 1);
    m_visited.reserve(most);
}

void Calipers::set(const Vector& direction, const Outline& outline) {
    TESK_ASSERT(outline.size() >= 3);
    m_direction = direction;
    m_corners.clear();
    for (const int vertex : outline) m_corners.push_back(m_points[vertex]);
    m_edges.clear();
    Vector before = m_corners.back();
    for (const Vector& corner : m_corners) {
        const Vector inward = direction * (corner - before);
        const Vector along = inward * direction;
        m_edges.push_back({Axis{along, along | along}, Axis{inward, inward | inward}});
        before = corner;
    }
    m_edges.push_back(m_edges.front());
}

CaliperRect Calipers::rectOn(const Stance& stance) const {
    const Edge& edge = m_edges[static_cast<std::size_t>(stance.support[CaliperRect::kBase])];
    return {{edge[0].vector, edge[1].vector},
            stance.support,
            {edge[0].squared, edge[1].squared},
            stance.area,
            m_points.constants().unsetF};
}

CaliperRect Calipers::edgeRect(int end) const {
    struct Projection {
        double x;
        double y;
    };
    CaliperRect rect = rectOn({{end, end, end, end}, 0.0});
    Projection right{m_points.constants().zero, m_points.constants().zero};
    Projection top = right;
    Projection left = right;
    for (int j = 0; j < size(); ++j) {
        const Vector d = corner(j) - corner(end);
        const Projection v{rect.axes[0] | d, rect.axes[1] | d};
        if (v.x > right.x || (v.x == right.x && v.y > right.y)) {
            rect.support[CaliperRect::kRight] = j;
            right = v;
        }
        if (v.y > top.y || (v.y == top.y && v.x < top.x)) {
            rect.support[CaliperRect::kTop] = j;
            top = v;
        }
        if (v.x < left.x || (v.x == left.x && v.y < left.y)) {
            rect.support[CaliperRect::kLeft] = j;
            left = v;
        }
    }
    rect.area = (right.x - left.x) * top.y / rect.squaredLengths[1];
    return rect;
}

double Calipers::sineSquared(const std::array<int, 4>& support, std::size_t side) const {
    // Top and left run against the axes, which does not change the square.
    const Axis& axis = m_edges[static_cast<std::size_t>(support[CaliperRect::kBase])][side & 1];
    const Axis& along = m_edges[static_cast<std::size_t>(support[side]) + 1][0];
    const Vector sine = axis.vector * along.vector;
    return (sine | sine) / (axis.squared * along.squared);
}

int Calipers::angles(const std::array<int, 4>& support, SideAngles& entries) const {
    int count = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t side = (i + 3) % 4;
        if (support[side] == support[i]) continue;
        entries[static_cast<std::size_t>(count++)] = {sineSquared(support, side),
                                                      static_cast<int>(side)};
    }
    return count;
}

/// The same as turn(), but also for angles that are NaN: sorts the angles.
bool Calipers::turnInOrder(Stance& stance) {
    SideAngles entries{};
    const int count = angles(stance.support, entries);
    if (count == 0) return false;
    const std::array<int, 4> order = sortAngles(entries, count);
    const auto entry = [&](int k) {
        return entries[static_cast<std::size_t>(order[static_cast<std::size_t>(k)])];
    };
    for (int k = 0; k < count && entry(k).sinSq == entry(0).sinSq; ++k) {
        int& support = stance.support[static_cast<std::size_t>(entry(k).side)];
        support = next(support);
    }
    return standOn(static_cast<std::size_t>(entry(0).side), stance);
}

/// Turns a rectangle by the least angle, which makes a side flush with its next outline edge.
/// Returns false, with the rectangle half turned, if its bottom vertex was visited before.
bool Calipers::turn(Stance& stance) {
    // Only the least angle matters, and which sides have it. Nothing is sorted, and no branch
    // depends on an angle.
    constexpr double kNone = std::numeric_limits<double>::infinity();
    const std::array<int, 4> support = stance.support;
    const auto sineOf = [&](std::size_t side) {
        const double sine = sineSquared(support, side);
        return support[side] == support[(side + 1) % 4] ? kNone : sine;
    };
    const std::array<double, 4> sines = {sineOf(0), sineOf(1), sineOf(2), sineOf(3)};
    // Of equal ones the first in the order left, bottom, right, top.
    double least = sines[3];
    std::size_t side = 3;
    bool isOrdered = sines[3] == sines[3];
    for (std::size_t k = 0; k < 3; ++k) {
        isOrdered &= sines[k] == sines[k];
        side = sines[k] < least ? k : side;
        least = sines[k] < least ? sines[k] : least;
    }
    if (!isOrdered || !(least < kNone)) return turnInOrder(stance);
    for (std::size_t k = 0; k < 4; ++k) {
        stance.support[k] = sines[k] == least ? next(support[k]) : support[k];
    }
    return standOn(side, stance);
}

/// Makes a side the new bottom; false if its vertex was visited before.
bool Calipers::standOn(std::size_t side, Stance& stance) {
    const auto bottom = static_cast<std::size_t>(stance.support[side]);
    if (m_visited[bottom] != 0) return false;
    m_visited[bottom] = 1;
    // Rotated by `side` places: by one, then by two, without branches.
    const std::array<int, 4> s = stance.support;
    const bool isOdd = (side & 1) != 0;
    const std::array<int, 4> t = {isOdd ? s[1] : s[0], isOdd ? s[2] : s[1], isOdd ? s[3] : s[2],
                                  isOdd ? s[0] : s[3]};
    const bool isHalf = (side & 2) != 0;
    stance.support = {isHalf ? t[2] : t[0], isHalf ? t[3] : t[1], isHalf ? t[0] : t[2],
                      isHalf ? t[1] : t[3]};
    const auto [width, height] = sideRanges(stance.support);
    stance.area = width * height / m_edges[bottom][1].squared;
    return true;
}

std::array<double, 2> Calipers::sideRanges(const std::array<int, 4>& support) const {
    const auto at = [&](CaliperRect::Side side) { return corner(support[side]); };
    const Edge& edge = m_edges[static_cast<std::size_t>(support[CaliperRect::kBase])];
    return {edge[0].vector | (at(CaliperRect::kRight) - at(CaliperRect::kLeft)),
            edge[1].vector | (at(CaliperRect::kTop) - at(CaliperRect::kBase))};
}

CaliperRect Calipers::minRect() {
    Stance best;
    bool isFirst = true;
    forEachStance([&](const Stance& stance) {
        if (isFirst || best.area > stance.area) best = stance;
        isFirst = false;
    });
    return rectOn(best);
}

BoxFrame frameOver(const CaliperRect& rect, const Calipers& calipers, const Range& height) {
    const Vector& direction = calipers.direction();
    BoxFrame frame;
    frame.origin = calipers.support(rect, CaliperRect::kBase);
    const auto fromBase = [&](CaliperRect::Side side) {
        return calipers.support(rect, side) - frame.origin;
    };
    frame.axes = {rect.axes[0], rect.axes[1], direction};
    frame.squaredLengths = {rect.squaredLengths[0], rect.squaredLengths[1], direction | direction};
    frame.ranges = {
        Range{fromBase(CaliperRect::kLeft) | rect.axes[0],
              fromBase(CaliperRect::kRight) | rect.axes[0]},
        Range{calipers.points().constants().zero, fromBase(CaliperRect::kTop) | rect.axes[1]},
        height};
    frame.volume = volumeOf(frame);
    return frame;
}

}  // namespace Tesk::minbox

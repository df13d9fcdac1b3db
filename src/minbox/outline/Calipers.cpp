#include "minbox/outline/Calipers.h"

#include <limits>
#include <utility>

void removeCollinear(const MinBoundingBoxImpl& impl, const Vector& direction, Outline& outline) {
    if (outline.size() > 1 && outline.back() == outline.front()) outline.pop_back();
    const std::size_t size = outline.size();
    if (size == 0) return;
    // Kept vertices move down behind the place that is being read; the first is still needed last.
    const Vector first = hullPoint(impl, outline[0]);
    Vector current = first;
    Vector before = first - hullPoint(impl, outline[size - 1]);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const Vector following = i + 1 < size ? hullPoint(impl, outline[i + 1]) : first;
        const Vector after = following - current;
        const double turn = before | (after * direction);
        if (turn != impl.zero) outline[kept++] = outline[i];
        before = after;
        current = following;
    }
    outline.resize(kept);
    if (!outline.empty() && outline.back() == outline.front()) outline.pop_back();
}

void removeSteep(const MinBoundingBoxImpl& impl, const Vector& direction, Outline& outline) {
    constexpr double kSteep = 1e-7;  // the sine of the angle to the direction
    const double directionSquared = direction | direction;
    const Outline all = outline;
    outline.clear();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const int following = all[i + 1 == all.size() ? 0 : i + 1];
        const Vector edge = hullPoint(impl, following) - hullPoint(impl, all[i]);
        const Vector along = (direction * edge) * direction;
        const double whole = (edge | edge) * directionSquared * directionSquared;
        if ((along | along) > kSteep * kSteep * whole) outline.push_back(all[i]);
    }
}

std::array<int, 4> sortAngles(const SideAngles& entries, int count) {
    std::array<int, 4> order = {0, 1, 2, 3};
    const auto sortPair = [&](std::size_t i, std::size_t j) {
        const auto sinSq = [&](std::size_t k) {
            return entries[static_cast<std::size_t>(order[k])].sinSq;
        };
        if (sinSq(i) > sinSq(j)) std::swap(order[i], order[j]);
    };
    if (count == 2) {
        sortPair(0, 1);
    } else if (count == 3) {
        sortPair(0, 1);
        sortPair(0, 2);
        sortPair(1, 2);
    } else if (count == 4) {
        sortPair(0, 1);
        sortPair(2, 3);
        sortPair(0, 2);
        sortPair(1, 3);
        sortPair(1, 2);
    }
    return order;
}

void Calipers::reserve(std::size_t size) {
    m_points.reserve(size);
    m_edges.reserve(size);
    m_visited.reserve(size);
}

void Calipers::set(const Vector& direction, const Outline& outline) {
    m_points.clear();
    for (const int vertex : outline) m_points.push_back(hullPoint(m_impl, vertex));
    m_edges.clear();
    for (std::size_t i = 0; i < m_points.size(); ++i) {
        const Vector edge = m_points[i] - m_points[i == 0 ? m_points.size() - 1 : i - 1];
        const Vector inward = direction * edge;
        const Vector along = inward * direction;
        m_edges.push_back({Axis{along, along | along}, Axis{inward, inward | inward}});
    }
    if (!m_edges.empty()) m_edges.push_back(m_edges.front());
}

/// Forms what follows from where a rectangle stands.
void Calipers::setOn(const Stand& stand, CaliperRect& rect) const {
    const Edge& edge = m_edges[static_cast<std::size_t>(stand.support[CaliperRect::kBase])];
    rect.axes = {edge[0].vector, edge[1].vector};
    rect.squaredLengths = {edge[0].squared, edge[1].squared};
    rect.support = stand.support;
    rect.area = stand.area;
}

CaliperRect Calipers::rectOn(const Stand& stand) const {
    CaliperRect rect;
    rect.score = m_impl.unsetF;
    setOn(stand, rect);
    return rect;
}

CaliperRect Calipers::edgeRect(int end) const {
    struct Projection {
        double x;
        double y;
    };
    CaliperRect rect = rectOn({{end, end, end, end}, 0.0});
    Projection right{m_impl.zero, m_impl.zero};
    Projection top = right;
    Projection left = right;
    for (int j = 0; j < size(); ++j) {
        const Vector d = point(j) - point(end);
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

bool Calipers::angles(const CaliperRect& rect, SideAngles& entries, int& count) const {
    count = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t side = (i + 3) % 4;
        if (rect.support[side] == rect.support[i]) continue;
        entries[static_cast<std::size_t>(count++)] = {sineSquared(rect.support, side),
                                                      static_cast<int>(side)};
    }
    return count > 0;
}

bool Calipers::updateSupport(const SideAngles& entries, int count, const std::array<int, 4>& order,
                             CaliperRect& rect) {
    const auto entry = [&](int k) {
        return entries[static_cast<std::size_t>(order[static_cast<std::size_t>(k)])];
    };
    const SideAngle least = entry(0);
    Stand stand{rect.support, rect.area};
    for (int k = 0; k < count && entry(k).sinSq == least.sinSq; ++k) {
        int& support = stand.support[static_cast<std::size_t>(entry(k).side)];
        support = next(support);
    }
    const bool isNew = standOn(static_cast<std::size_t>(least.side), stand);
    setOn(stand, rect);
    return isNew;
}

bool Calipers::turn(CaliperRect& rect) {
    Stand stand{rect.support, rect.area};
    const bool isNew = turn(stand);
    setOn(stand, rect);
    return isNew;
}

bool Calipers::turn(Stand& stand) {
    // Only the least angle matters, and which sides share it: nothing needs sorting, and nothing to
    // be guessed by the processor.
    constexpr double kNone = std::numeric_limits<double>::infinity();
    const std::array<int, 4> support = stand.support;
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
    if (!isOrdered || !(least < kNone)) {
        CaliperRect rect = rectOn(stand);
        SideAngles entries{};
        int count = 0;
        const bool isNew = angles(rect, entries, count) &&
                           updateSupport(entries, count, sortAngles(entries, count), rect);
        stand = {rect.support, rect.area};
        return isNew;
    }
    for (std::size_t k = 0; k < 4; ++k) {
        stand.support[k] = sines[k] == least ? next(support[k]) : support[k];
    }
    return standOn(side, stand);
}

/// Makes the side that became flush the new bottom; false where its vertex was one before.
bool Calipers::standOn(std::size_t side, Stand& stand) {
    const auto bottom = static_cast<std::size_t>(stand.support[side]);
    if (m_visited[bottom] != 0) return false;
    m_visited[bottom] = 1;
    // Round by `side` places: by one, then by two, without a guess for the processor.
    const std::array<int, 4> s = stand.support;
    const bool isOdd = (side & 1) != 0;
    const std::array<int, 4> t = {isOdd ? s[1] : s[0], isOdd ? s[2] : s[1], isOdd ? s[3] : s[2],
                                  isOdd ? s[0] : s[3]};
    const bool isHalf = (side & 2) != 0;
    stand.support = {isHalf ? t[2] : t[0], isHalf ? t[3] : t[1], isHalf ? t[0] : t[2],
                     isHalf ? t[1] : t[3]};
    const auto [width, height] = sideRanges(stand.support);
    stand.area = width * height / m_edges[bottom][1].squared;
    return true;
}

std::array<double, 2> Calipers::sideRanges(const std::array<int, 4>& support) const {
    const auto at = [&](CaliperRect::Side side) { return point(support[side]); };
    const Edge& edge = m_edges[static_cast<std::size_t>(support[CaliperRect::kBase])];
    return {edge[0].vector | (at(CaliperRect::kRight) - at(CaliperRect::kLeft)),
            edge[1].vector | (at(CaliperRect::kTop) - at(CaliperRect::kBase))};
}

std::array<double, 2> Calipers::sideRanges(const CaliperRect& rect) const {
    return sideRanges(rect.support);
}

void Calipers::startRun(const CaliperRect& first) {
    m_visited.assign(m_points.size(), 0);
    m_visited[static_cast<std::size_t>(first.support[CaliperRect::kBase])] = 1;
}

CaliperRect Calipers::minRect() {
    const CaliperRect first = edgeRect(0);
    startRun(first);
    Stand stand{first.support, first.area};
    Stand best = stand;
    for (int i = 0; i < size() && turn(stand); ++i) {
        if (best.area > stand.area) best = stand;
    }
    return rectOn(best);
}

void layOver(const MinBoundingBoxImpl& impl, const CaliperRect& rect, const Calipers& calipers,
             const Vector& direction, const Range& height, BoxFrame& frame) {
    const auto support = [&](CaliperRect::Side side) { return calipers.point(rect.support[side]); };
    frame.origin = support(CaliperRect::kBase);
    frame.axes = {rect.axes[0], rect.axes[1], direction};
    frame.squaredLengths = {rect.squaredLengths[0], rect.squaredLengths[1], direction | direction};
    frame.ranges[0] = {(support(CaliperRect::kLeft) - frame.origin) | frame.axes[0],
                       (support(CaliperRect::kRight) - frame.origin) | frame.axes[0]};
    frame.ranges[1] = {impl.zero, (support(CaliperRect::kTop) - frame.origin) | frame.axes[1]};
    frame.ranges[2] = height;
    frame.volume = volumeOf(frame);
}

#include "CaliperRect.h"

#include <utility>

namespace {

Vector at(const MinBoundingBoxImpl& impl, const Outline& outline, int position) {
    return hullPoint(impl, outline[static_cast<std::size_t>(position)]);
}

int next(const Outline& outline, int position) {
    return position + 1 == static_cast<int>(outline.size()) ? 0 : position + 1;
}

/// Lays the rectangle's axes along an outline edge.
void alignTo(const Vector& edge, const Vector& direction, CaliperRect& rect) {
    rect.axes[1] = direction * edge;
    rect.axes[0] = rect.axes[1] * direction;
    for (std::size_t i = 0; i < 2; ++i) rect.squaredLengths[i] = rect.axes[i] | rect.axes[i];
}

}  // namespace

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

CaliperRect edgeRect(const MinBoundingBoxImpl& impl, int i0, int i1, const Vector& direction,
                     const Outline& outline) {
    struct Projection {
        double x;
        double y;
    };
    CaliperRect rect;
    const Vector origin = at(impl, outline, i1);
    alignTo(origin - at(impl, outline, i0), direction, rect);
    rect.support = {i1, i1, i1, i1};
    rect.score = impl.unsetF;
    Projection right{impl.zero, impl.zero};
    Projection top = right;
    Projection left = right;
    for (int j = 0; j < static_cast<int>(outline.size()); ++j) {
        const Vector d = at(impl, outline, j) - origin;
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

bool angles(const MinBoundingBoxImpl& impl, const Vector& direction, const Outline& outline,
            const CaliperRect& rect, SideAngles& entries, int& count) {
    count = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const std::size_t side = (i + 3) % 4;
        const int support = rect.support[side];
        if (support == rect.support[i]) continue;
        // Bottom, right, top and left run along the axes, then against them.
        Vector along = rect.axes[side & 1];
        if (side >= 2) along = {-along.x, -along.y, -along.z};
        Vector edge = at(impl, outline, next(outline, support)) - at(impl, outline, support);
        edge = (direction * edge) * direction;
        const Vector sine = along * edge;
        entries[static_cast<std::size_t>(count++)] = {
            (sine | sine) / (rect.squaredLengths[side & 1] * (edge | edge)),
            static_cast<int>(side)};
    }
    return count > 0;
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

bool updateSupport(const MinBoundingBoxImpl& impl, const SideAngles& entries, int count,
                   const std::array<int, 4>& order, const Vector& direction, const Outline& outline,
                   std::vector<bool>& visited, CaliperRect& rect) {
    const auto entry = [&](int k) {
        return entries[static_cast<std::size_t>(order[static_cast<std::size_t>(k)])];
    };
    const SideAngle least = entry(0);
    for (int k = 0; k < count && entry(k).sinSq == least.sinSq; ++k) {
        int& support = rect.support[static_cast<std::size_t>(entry(k).side)];
        support = next(outline, support);
    }
    const auto bottom =
        static_cast<std::size_t>(rect.support[static_cast<std::size_t>(least.side)]);
    if (visited[bottom]) return false;
    visited[bottom] = true;
    // The side that became flush is the new bottom.
    const std::array<int, 4> old = rect.support;
    for (std::size_t k = 0; k < 4; ++k) {
        rect.support[k] = old[(static_cast<std::size_t>(least.side) + k) % 4];
    }
    // Position 0 was visited first, so there is a position before the bottom.
    const int base = rect.support[CaliperRect::kBase];
    alignTo(at(impl, outline, base) - at(impl, outline, base - 1), direction, rect);
    const auto [width, height] = sideRanges(impl, outline, rect);
    rect.area = width * height / rect.squaredLengths[1];
    return true;
}

std::array<double, 2> sideRanges(const MinBoundingBoxImpl& impl, const Outline& outline,
                                 const CaliperRect& rect) {
    const auto support = [&](CaliperRect::Side side) {
        return at(impl, outline, rect.support[side]);
    };
    return {rect.axes[0] | (support(CaliperRect::kRight) - support(CaliperRect::kLeft)),
            rect.axes[1] | (support(CaliperRect::kTop) - support(CaliperRect::kBase))};
}

CaliperRect minRect(const MinBoundingBoxImpl& impl, const Vector& direction, const Outline& outline,
                    std::vector<bool>& visited) {
    CaliperRect best;
    bool isFirst = true;
    forEachRect(impl, direction, outline, visited, [&](const CaliperRect& rect) {
        if (isFirst || best.area > rect.area) best = rect;
        isFirst = false;
    });
    return best;
}

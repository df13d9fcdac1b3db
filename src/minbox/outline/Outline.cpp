#include "minbox/outline/Outline.h"

namespace Tesk::minbox {

void removeCollinear(const HullPoints& points, const Vector& direction, Outline& outline) {
    if (outline.size() > 1 && outline.back() == outline.front()) outline.pop_back();
    const std::size_t size = outline.size();
    if (size == 0) return;
    // Kept vertices are moved down over positions that have been read; the first vertex is needed
    // again at the end.
    const Vector first = points[outline[0]];
    Vector current = first;
    Vector before = first - points[outline[size - 1]];
    std::size_t kept = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const Vector following = i + 1 < size ? points[outline[i + 1]] : first;
        const Vector after = following - current;
        const double turn = before | (after * direction);
        if (turn != points.constants().zero) outline[kept++] = outline[i];
        before = after;
        current = following;
    }
    outline.resize(kept);
    if (!outline.empty() && outline.back() == outline.front()) outline.pop_back();
}

void removeSteep(const HullPoints& points, const Vector& direction, Outline& outline) {
    constexpr double kMinSine = 1e-7;  // of the angle to the direction
    const double directionSquared = direction | direction;
    const Outline all = outline;
    outline.clear();
    for (std::size_t i = 0; i < all.size(); ++i) {
        const int following = all[i + 1 == all.size() ? 0 : i + 1];
        const Vector edge = points[following] - points[all[i]];
        const Vector across = (direction * edge) * direction;
        const double whole = (edge | edge) * directionSquared * directionSquared;
        if ((across | across) > kMinSine * kMinSine * whole) outline.push_back(all[i]);
    }
}

}  // namespace Tesk::minbox

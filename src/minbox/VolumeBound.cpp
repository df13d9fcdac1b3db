#include "VolumeBound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

/// Of the hull's diagonal, per extent: more than a box that passes its check may leave out, and
/// than its axes' being only nearly at right angles, or nearly along the direction, can take away.
constexpr double kSlack = 1e-8;

/// A right angle, in steps.
constexpr int kRight = 4096;
constexpr int kCoarse = kRight / 8;
constexpr int kFinest = 2;

/// Ranges to climb for, per direction: where they are spent, finding the box costs less.
constexpr int kMostTries = 200;

struct Turn {
    double cosine;
    double sine;
};

/// By a number of steps.
const Turn& turnBy(int steps) {
    static const auto turns = [] {
        std::array<Turn, kRight + 1> all{};
        for (int i = 0; i <= kRight; ++i) {
            const double angle = i * (std::numbers::pi / 2.0 / kRight);
            all[static_cast<std::size_t>(i)] = {std::cos(angle), std::sin(angle)};
        }
        return all;
    }();
    return turns[static_cast<std::size_t>(steps)];
}

/// A unit vector at a right angle to one.
Vector unitAcross(const Vector& unit) {
    const double x = std::fabs(unit.x);
    const double y = std::fabs(unit.y);
    const double z = std::fabs(unit.z);
    if (x <= y && x <= z) return (unit * Vector(1, 0, 0)).GetNormal();
    return (unit * (y <= z ? Vector(0, 1, 0) : Vector(0, 0, 1))).GetNormal();
}

double hullDiagonal(const MinBoundingBoxImpl& impl) {
    Vector low = hullPoint(impl, 0);
    Vector high = low;
    for (int i = 1; i < hullVertexCount(impl); ++i) {
        const Vector p = hullPoint(impl, i);
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return (high - low).GetLength();
}

}  // namespace

VolumeBound::VolumeBound(const MinBoundingBoxImpl& impl, const SearchHull& hull)
    : m_supports(impl, hull.links()), m_slack(kSlack * hullDiagonal(impl)) {
    m_fine = kCoarse;
    const double fine = m_supports.cellAngle() * kRight / (std::numbers::pi / 2.0);
    while (m_fine > kFinest && m_fine > fine) m_fine /= 2;
}

VolumeBound::View VolumeBound::viewOf(const Vector& direction) const {
    const Vector unit = direction.GetNormal();
    const Vector first = unitAcross(unit);
    const double height = (m_supports.across(unit) | unit) - m_slack;
    return {first, unit * first, std::max(height, 0.0)};
}

VolumeBound::Volumes VolumeBound::volumes(const View& view, int first, int last,
                                          Supports supports) const {
    const Turn& middle = turnBy((first + last) / 2);
    const Vector along = view.first * middle.cosine + view.second * middle.sine;
    const Vector across = view.second * middle.cosine - view.first * middle.sine;
    const bool isExact = supports == Supports::kExact;
    const Vector length = isExact ? m_supports.across(along) : m_supports.nearlyAcross(along);
    const Vector width = isExact ? m_supports.across(across) : m_supports.nearlyAcross(across);
    const Turn lengthwise{length | view.first, length | view.second};
    const Turn widthwise{width | view.second, width | view.first};
    const auto volumeAt = [&](const Turn& t) {
        const double x = lengthwise.cosine * t.cosine + lengthwise.sine * t.sine - m_slack;
        const double y = widthwise.cosine * t.cosine - widthwise.sine * t.sine - m_slack;
        return std::max(x, 0.0) * std::max(y, 0.0) * view.height;
    };
    return {std::min(volumeAt(turnBy(first)), volumeAt(turnBy(last))), volumeAt(middle)};
}

double VolumeBound::roughly(const Vector& direction) const {
    const View view = viewOf(direction);
    double least = volumes(view, 0, kCoarse, Supports::kNear).bound;
    for (int first = kCoarse; first < kRight; first += kCoarse) {
        least = std::min(least, volumes(view, first, first + kCoarse, Supports::kNear).bound);
    }
    return least;
}

double VolumeBound::against(double limit, const Vector& direction) const {
    const View view = viewOf(direction);
    double least = std::numeric_limits<double>::infinity();
    int tries = kMostTries;
    for (int first = 0; first < kRight; first += kCoarse) {
        least = std::min(least, refined(view, first, first + kCoarse, limit, tries));
        if (!(least > limit)) return 0.0;
    }
    return least;
}

/// Halves a range until the bounds over all its parts are above the limit, or no hope is left: what
/// is returned is then not above it.
double VolumeBound::refined(const View& view, int first, int last, double limit, int& tries) const {
    const int size = last - first;
    double least = 0.0;
    if (size >= m_fine) {
        least = volumes(view, first, last, Supports::kNear).bound;
        if (least > limit) return least;
    }
    if (size <= m_fine) {
        if (tries == 0) return least;
        --tries;
        const Volumes exact = volumes(view, first, last, Supports::kExact);
        least = std::max(least, exact.bound);
        const bool isHopeless = !(exact.middle > limit);
        if (least > limit || isHopeless || size <= kFinest) return least;
    }
    const int middle = (first + last) / 2;
    const double before = refined(view, first, middle, limit, tries);
    if (!(before > limit)) return before;
    return std::min(before, refined(view, middle, last, limit, tries));
}

#include "minbox/bound/BoxBound.h"

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
constexpr int kRanges = 8;  // to begin with
constexpr int kCoarse = kRight / kRanges;
constexpr int kFinest = 2;
constexpr int kParts = 4;  // of a range that is divided

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

}  // namespace

BoxBound::BoxBound(const MinBoundingBoxImpl& impl, const SearchHull& hull, BoxMeasure measure)
    : m_measure(measure),
      m_supports(impl, hull.links()),
      m_diagonal(::hullDiagonal(impl)),
      m_slack(kSlack * m_diagonal),
      m_fine(kCoarse) {
    const double fine = m_supports.cellAngle() * kRight / (std::numbers::pi / 2.0);
    while (m_fine > kFinest && m_fine > 2.0 * fine) m_fine /= kParts;
}

BoxBound::View BoxBound::viewOf(const Vector& direction) const {
    const Vector unit = direction.GetNormal();
    const Vector first = unitAcross(unit);
    const double height = (m_supports.across(unit) | unit) - m_slack;
    return {first, unit * first, std::max(height, 0.0)};
}

struct BoxBound::Widths {
    Turn along;
    Turn across;
};

BoxBound::Widths BoxBound::widths(const View& view, const Vector& along,
                                  const Vector& across) const {
    return {{along | view.first, along | view.second}, {across | view.second, across | view.first}};
}

double BoxBound::measureAt(const View& view, const Widths& widths, int angle) const {
    const Turn& t = turnBy(angle);
    const double x = widths.along.cosine * t.cosine + widths.along.sine * t.sine - m_slack;
    const double y = widths.across.cosine * t.cosine - widths.across.sine * t.sine - m_slack;
    const double length = std::max(x, 0.0);
    const double width = std::max(y, 0.0);
    if (m_measure == BoxMeasure::kVolume) return length * width * view.height;
    return std::min(length * width, std::min(length, width) * view.height);
}

/// The bounds over as many ranges side by side as there is room for, with vertices that are only
/// nearly the farthest.
void BoxBound::nearBounds(const View& view, int first, int size, std::span<double> bounds) const {
    std::array<Vector, 2 * kRanges> directions;
    for (std::size_t i = 0; i < bounds.size(); ++i) {
        const Turn& t = turnBy(first + static_cast<int>(i) * size + size / 2);
        directions[2 * i] = view.first * t.cosine + view.second * t.sine;
        directions[2 * i + 1] = view.second * t.cosine - view.first * t.sine;
    }
    std::array<Vector, 2 * kRanges> across;
    m_supports.nearlyAcross(std::span(directions).first(2 * bounds.size()), across.data());
    for (std::size_t i = 0; i < bounds.size(); ++i) {
        const int begin = first + static_cast<int>(i) * size;
        const Widths found = widths(view, across[2 * i], across[2 * i + 1]);
        bounds[i] = std::min(measureAt(view, found, begin), measureAt(view, found, begin + size));
    }
}

double BoxBound::roughly(const Vector& direction) const {
    std::array<double, kRanges> bounds;
    nearBounds(viewOf(direction), 0, kCoarse, bounds);
    return *std::min_element(bounds.begin(), bounds.end());
}

double BoxBound::against(double limit, const Vector& direction) const {
    const View view = viewOf(direction);
    int tries = kMostTries;
    std::array<double, kRanges> bounds;
    nearBounds(view, 0, kCoarse, bounds);
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kRanges; ++i) {
        double& bound = bounds[static_cast<std::size_t>(i)];
        if (!(bound > limit)) bound = divided(view, i * kCoarse, kCoarse, limit, tries);
        if (!(bound > limit)) return 0.0;
        least = std::min(least, bound);
    }
    return least;
}

/// Divides a range until the bounds over all its parts are above the limit, or no hope is left:
/// what is returned is then not above it.
double BoxBound::divided(const View& view, int first, int size, double limit, int& tries) const {
    if (size <= m_fine) return climbed(view, first, size, limit, tries);
    const int part = size / kParts;
    std::array<double, kParts> bounds;
    nearBounds(view, first, part, bounds);
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kParts && least > limit; ++i) {
        double& bound = bounds[static_cast<std::size_t>(i)];
        if (!(bound > limit)) bound = divided(view, first + i * part, part, limit, tries);
        least = std::min(least, bound);
    }
    return least;
}

/// The same with the farthest vertices, from where the table does not tell directions apart.
double BoxBound::climbed(const View& view, int first, int size, double limit, int& tries) const {
    if (tries == 0) return 0.0;
    --tries;
    const int middle = first + size / 2;
    const Turn& t = turnBy(middle);
    const Vector along = view.first * t.cosine + view.second * t.sine;
    const Vector across = view.second * t.cosine - view.first * t.sine;
    const Widths found = widths(view, m_supports.across(along), m_supports.across(across));
    const double bound =
        std::min(measureAt(view, found, first), measureAt(view, found, first + size));
    const bool isHopeless = !(measureAt(view, found, middle) > limit);
    if (bound > limit || isHopeless || size <= kFinest) return bound;
    const int part = size / kParts;
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kParts && least > limit; ++i) {
        least = std::min(least, climbed(view, first + i * part, part, limit, tries));
    }
    return least;
}

#include "minbox/bound/BoxBound.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "TeskDataBasic/Transcendental.h"

namespace Tesk::minbox {
namespace {

/// Is subtracted from each extent, relative to the hull's diagonal. Exceeds what a box that passes
/// checkFrame() may leave outside, plus what an extent may lose because the box's axes are only
/// nearly orthogonal or only nearly along the direction.
constexpr double kSlack = 1e-8;

constexpr int kRightAngle = 4096;  // in steps
constexpr int kIntervals = 8;      // of a right angle, to begin with
constexpr int kFinest = 2;         // steps of an interval that is not divided further
constexpr int kParts = 4;          // of an interval that is divided

/// For how many intervals per direction the farthest vertices are found. Beyond that, finding the
/// box is cheaper.
constexpr int kMaxTries = 200;

}  // namespace

struct BoxBound::Turn {
    double cosine;
    double sine;
};

/// The turns by 0 .. kRightAngle steps.
const BoxBound::Turn* BoxBound::turns() {
    static const auto turns = [] {
        std::array<Turn, kRightAngle + 1> all{};
        for (int i = 0; i <= kRightAngle; ++i) {
            const double angle = i * (std::numbers::pi / 2.0 / kRightAngle);
            all[static_cast<std::size_t>(i)] = {cosine(angle), sine(angle)};
        }
        return all;
    }();
    return turns.data();
}

struct BoxBound::Widths {
    Widths(const View& view, const Vector& alongMiddle, const Vector& acrossMiddle)
        : along{alongMiddle | view.first, alongMiddle | view.second},
          across{acrossMiddle | view.second, acrossMiddle | view.first} {}

    Turn along;
    Turn across;
};

BoxBound::BoxBound(const SearchHull& hull, BoxMeasure measure)
    : m_measure(measure),
      m_turns(turns()),
      m_supports(hull),
      m_slack(kSlack * hull.points().diagonal()),
      m_finestOfTable(kRightAngle / kIntervals) {
    const double cell = m_supports.cellAngle() * kRightAngle / (std::numbers::pi / 2.0);
    while (m_finestOfTable > kFinest && m_finestOfTable > 2.0 * cell) m_finestOfTable /= kParts;
}

BoxBound::View BoxBound::viewOf(const Vector& direction) const {
    const Vector unit = direction.GetNormal();
    const Vector first = anyOrthogonal(unit).GetNormal();
    const double height = (m_supports.across(unit) | unit) - m_slack;
    return {first, unit * first, std::max(height, 0.0)};
}

/// A lower bound of the measure at one angle of the interval that the widths are for.
double BoxBound::measureAt(const View& view, const Widths& widths, int angle) const {
    TESK_ASSERT(angle >= 0 && angle <= kRightAngle);
    const Turn& t = m_turns[angle];
    const double x = widths.along.cosine * t.cosine + widths.along.sine * t.sine - m_slack;
    const double y = widths.across.cosine * t.cosine - widths.across.sine * t.sine - m_slack;
    const double length = std::max(x, 0.0);
    const double width = std::max(y, 0.0);
    if (m_measure == BoxMeasure::kVolume) return length * width * view.height;
    return std::min(length * width, std::min(length, width) * view.height);
}

/// A lower bound over the whole interval.
double BoxBound::measureAtEnds(const View& view, const Widths& widths, Interval interval) const {
    return std::min(measureAt(view, widths, interval.first),
                    measureAt(view, widths, interval.last()));
}

/// Lower bounds over equal parts of an interval, from vertices of the table.
template <int kCount>
std::array<double, kCount> BoxBound::tableBounds(const View& view, Interval interval) const {
    TESK_ASSERT(interval.size % (2 * kCount) == 0);
    std::array<Vector, 2 * kCount> directions;
    for (int i = 0; i < kCount; ++i) {
        const Turn& t = m_turns[interval.part(i, kCount).middle()];
        directions[static_cast<std::size_t>(2 * i)] = view.first * t.cosine + view.second * t.sine;
        directions[static_cast<std::size_t>(2 * i + 1)] =
            view.second * t.cosine - view.first * t.sine;
    }
    std::array<Vector, 2 * kCount> across;
    m_supports.nearlyAcross(directions, across);
    std::array<double, kCount> bounds;
    for (std::size_t i = 0; i < kCount; ++i) {
        const Widths widths(view, across[2 * i], across[2 * i + 1]);
        bounds[i] = measureAtEnds(view, widths, interval.part(static_cast<int>(i), kCount));
    }
    return bounds;
}

double BoxBound::quickBound(const Vector& direction) const {
    const auto bounds = tableBounds<kIntervals>(viewOf(direction), {0, kRightAngle});
    return *std::min_element(bounds.begin(), bounds.end());
}

double BoxBound::boundAbove(double limit, const Vector& direction) const {
    const View view = viewOf(direction);
    const Interval all{0, kRightAngle};
    int tries = kMaxTries;
    auto bounds = tableBounds<kIntervals>(view, all);
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kIntervals; ++i) {
        double& bound = bounds[static_cast<std::size_t>(i)];
        if (!(bound > limit)) bound = boundOverParts(view, all.part(i, kIntervals), limit, tries);
        if (!(bound > limit)) return 0.0;
        least = std::min(least, bound);
    }
    return least;
}

/// Divides an interval until the bounds of all its parts exceed the limit. If one cannot, the
/// result does not exceed the limit either.
double BoxBound::boundOverParts(const View& view, Interval interval, double limit,
                                int& tries) const {
    if (interval.size <= m_finestOfTable) return boundOfFarthest(view, interval, limit, tries);
    auto bounds = tableBounds<kParts>(view, interval);
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kParts && least > limit; ++i) {
        double& bound = bounds[static_cast<std::size_t>(i)];
        if (!(bound > limit)) {
            bound = boundOverParts(view, interval.part(i, kParts), limit, tries);
        }
        least = std::min(least, bound);
    }
    return least;
}

/// The same with the farthest vertices, for intervals too fine for the table.
double BoxBound::boundOfFarthest(const View& view, Interval interval, double limit,
                                 int& tries) const {
    if (tries == 0) return 0.0;
    --tries;
    const Turn& t = m_turns[interval.middle()];
    const Vector along = view.first * t.cosine + view.second * t.sine;
    const Vector across = view.second * t.cosine - view.first * t.sine;
    const Widths widths(view, m_supports.across(along), m_supports.across(across));
    const double bound = measureAtEnds(view, widths, interval);
    const bool isHopeless = !(measureAt(view, widths, interval.middle()) > limit);
    if (bound > limit || isHopeless || interval.size <= kFinest) return bound;
    double least = std::numeric_limits<double>::infinity();
    for (int i = 0; i < kParts && least > limit; ++i) {
        least = std::min(least, boundOfFarthest(view, interval.part(i, kParts), limit, tries));
    }
    return least;
}

}  // namespace Tesk::minbox

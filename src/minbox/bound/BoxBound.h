#pragma once

#include <array>
#include <atomic>
#include <limits>

#include "minbox/bound/SupportMap.h"

namespace Tesk::minbox {

/// The least volume found so far, shared by the searches of one call, which skip whatever cannot
/// give a smaller box. This only saves time: the result does not depend on when a thread sees a new
/// value.
class VolumeLimit {
 public:
    double get() const { return m_volume.load(std::memory_order_relaxed); }

    void lowerTo(double volume) {
        double known = get();
        while (volume < known && !m_volume.compare_exchange_weak(known, volume)) {
        }
    }

 private:
    std::atomic<double> m_volume = std::numeric_limits<double>::infinity();
};

/// The quantity that is bounded.
enum class BoxMeasure {
    kVolume,
    kSmallestSide,  ///< the area of the smallest side
};

/// Lower bounds of the volume, or of the smallest side, of all boxes with an axis along a
/// direction. A bound costs a fraction of finding the box.
///
/// Seen along the direction, a box is a rectangle at some angle. Any two vertices bound the hull's
/// width at every angle by a sinusoid. Over an interval of angles, two vertices far apart along its
/// middle and two far apart across it bound the rectangle's area by the product of two sinusoids.
/// Each is log-concave where it is positive, also after subtracting the slack, and so is the
/// product: its minimum lies at an end of the interval.
class BoxBound {
 public:
    /// Keeps references to the hull's data.
    explicit BoxBound(const SearchHull& hull, BoxMeasure measure = BoxMeasure::kVolume);

    /// A lower bound of the height along a direction, both of the hull and of any box that passes
    /// checkFrame().
    double heightAlong(const Vector& direction) const { return viewOf(direction).height; }

    /// A quick lower bound of the measure of all boxes along the direction that pass checkFrame().
    /// Does not allow for what a search rounds to float.
    double quickBound(const Vector& direction) const;

    /// The same, refined until it exceeds the limit; 0 if it does not reach that.
    double boundAbove(double limit, const Vector& direction) const;

    /// Whether every box along the direction is known to measure more than the limit.
    bool isAbove(double limit, const Vector& direction) const {
        return limit < std::numeric_limits<double>::infinity() &&
               boundAbove(limit, direction) > limit;
    }

 private:
    /// The hull seen along a direction.
    struct View {
        Vector first;  ///< two unit vectors across the direction
        Vector second;
        double height;  ///< along the direction, less the slack
    };

    /// An interval of angles, in steps.
    struct Interval {
        int first;
        int size;

        Interval part(int index, int count) const {
            return {first + index * (size / count), size / count};
        }
        int middle() const { return first + size / 2; }
        int last() const { return first + size; }
    };

    /// The cosine and the sine of an angle.
    struct Turn;

    /// Lower bounds of the hull's width along and across an interval's middle, as sinusoids.
    struct Widths;

    static const Turn* turns();
    View viewOf(const Vector& direction) const;
    double measureAt(const View& view, const Widths& widths, int angle) const;
    double measureAtEnds(const View& view, const Widths& widths, Interval interval) const;
    template <int kCount>
    std::array<double, kCount> tableBounds(const View& view, Interval interval) const;
    double boundOverParts(const View& view, Interval interval, double limit, int& tries) const;
    double boundOfFarthest(const View& view, Interval interval, double limit, int& tries) const;

    BoxMeasure m_measure;
    const Turn* m_turns;  ///< by steps
    SupportMap m_supports;
    double m_slack;
    int m_finestOfTable;  ///< steps; on a finer interval the table gives the same vertices
};

}  // namespace Tesk::minbox

#pragma once

#include <limits>
#include <span>

#include "BoxCandidate.h"
#include "MinBoundingBoxImpl.h"
#include "SearchHull.h"
#include "SupportMap.h"

/// Bounds below the volume of any box with an axis along a direction, for a fraction of what
/// finding the box costs.
///
/// Seen along the direction, the box is a rectangle at some angle. Any two vertices bound the
/// hull's width at every angle, by a sinusoid. Over a range of angles, two that are far apart along
/// its middle and two that are far apart across it bound the rectangle's area: the product of the
/// sinusoids, which has its least value at an end of the range, as the logarithm of each is
/// concave.
class VolumeBound {
 public:
    /// Keeps references to both.
    VolumeBound(const MinBoundingBoxImpl& impl, const SearchHull& hull);

    /// Below the volume, as the searches compute it, of any box along the direction.
    double roughly(const Vector& direction) const;

    /// The same, as good as it takes to be above a limit; 0 where it cannot be.
    double against(double limit, const Vector& direction) const;

    /// Whether no box along the direction has a volume of at most the limit, as far as can be told.
    bool isAbove(double limit, const Vector& direction) const {
        return limit < std::numeric_limits<double>::infinity() && against(limit, direction) > limit;
    }

 private:
    /// The hull seen along a direction.
    struct View {
        Vector first;  ///< two axes across the direction
        Vector second;
        double height;  ///< along the direction, less what a box may leave out
    };

    /// The hull's width over a range of angles, at least: along the range and across it, as
    /// a cosine's and a sine's part.
    struct Widths;

    View viewOf(const Vector& direction) const;
    Widths widths(const View& view, const Vector& along, const Vector& across) const;
    double volumeAt(const View& view, const Widths& widths, int angle) const;
    void nearBounds(const View& view, int first, int size, std::span<double> bounds) const;
    double divided(const View& view, int first, int size, double limit, int& tries) const;
    double climbed(const View& view, int first, int size, double limit, int& tries) const;

    SupportMap m_supports;
    double m_slack = 0.0;
    int m_fine = 1;  ///< steps over which the table tells directions apart
};

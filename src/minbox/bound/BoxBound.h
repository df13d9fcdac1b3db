#pragma once

#include <limits>
#include <span>

#include "minbox/bound/SupportMap.h"
#include "minbox/box/BoxCandidate.h"
#include "minbox/frame/MinBoundingBoxImpl.h"
#include "minbox/hull/SearchHull.h"

/// What a search makes small.
enum class BoxMeasure {
    kVolume,
    kSmallestSide,  ///< the area of the smallest side
};

/// Bounds below the volume, or the smallest side, of any box with an axis along a direction, for a
/// fraction of what finding the box costs.
///
/// Seen along the direction, the box is a rectangle at some angle. Any two vertices bound the
/// hull's width at every angle, by a sinusoid. Over a range of angles, two that are far apart along
/// its middle and two that are far apart across it bound the rectangle's area: the product of the
/// sinusoids, which has its least value at an end of the range, as the logarithm of each is
/// concave; so has each of the two, and what is left when less than it is taken away.
class BoxBound {
 public:
    /// Keeps references to both.
    BoxBound(const MinBoundingBoxImpl& impl, const SearchHull& hull,
             BoxMeasure measure = BoxMeasure::kVolume);

    double hullDiagonal() const { return m_diagonal; }

    /// Not above the hull's height along the direction, nor that of a box that passes its check.
    double heightAlong(const Vector& direction) const { return viewOf(direction).height; }

    /// Below the measure of any box along the direction that passes its check, but for what
    /// the search rounds to float.
    double roughly(const Vector& direction) const;

    /// The same, as good as it takes to be above a limit; 0 where that was not found to be so.
    double against(double limit, const Vector& direction) const;

    /// Whether no box along the direction measures as little as the limit, as far as can be told.
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
    double measureAt(const View& view, const Widths& widths, int angle) const;
    void nearBounds(const View& view, int first, int size, std::span<double> bounds) const;
    double divided(const View& view, int first, int size, double limit, int& tries) const;
    double climbed(const View& view, int first, int size, double limit, int& tries) const;

    BoxMeasure m_measure;
    SupportMap m_supports;
    double m_diagonal;  ///< of the box around the vertices along the coordinate axes
    double m_slack;
    int m_fine;  ///< steps over which the table tells directions apart
};
